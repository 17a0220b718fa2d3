# Completes command lines of harborlantern in fish. -s must come first; without it the line asks for the window.

function __harborlantern_first
    test (count (commandline -opc)) -eq 1
end
function __harborlantern_report
    string match -q -- '-s*' (commandline -opc)[2]
end
function __harborlantern_switches
    not contains -- -- (commandline -opc)
end

complete -c harborlantern -n __harborlantern_first -o s -d 'Write a report, with no window'
complete -c harborlantern -n __harborlantern_first -s h -l help -d 'Help'
complete -c harborlantern -n __harborlantern_first -l version -d 'The version'
for pair in '0 comma' '1 semicolon' '2 tab' '3 blank'
    set -l parts (string split ' ' $pair)
    complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -o d$parts[1] -d "Delimiter: $parts[2]"
end
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l format -x -a 'csv txt json nul jsonl ncdu scan' -d 'Format, whatever the name of the report ends in'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l balance -d 'What adds up to the used space, as txt or json'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l find -x -d 'The files that match a filter, as csv or nul'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l exclude -x -d 'Leave out what a rule names'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l exclude-from -r -F -d 'Leave out what the rules of a file name'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l exclude-caches -d 'Leave out folders with a CACHEDIR.TAG'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l compare -r -F -d 'What has grown since a saved scan'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l grown -x -d 'Status 5 if anything grew by more'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l open -r -F -d 'A saved scan instead of folders'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l no-names -d 'A saved scan without host and owners'
complete -c harborlantern -n '__harborlantern_report; and __harborlantern_switches' -l progress -x -a json -d 'How far it is, on standard error'
complete -c harborlantern -n __harborlantern_switches -o TLMODUS -d 'Texts from HarborlanternTL.txt'
