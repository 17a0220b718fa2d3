# A line for each folder that has grown: by how many bytes, on which host, its path.
select(.k == "g") | [.change, (input_filename | sub(".*/"; "") | sub("\\.jsonl$"; "")), .path] | @tsv
