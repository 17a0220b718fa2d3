-- Makes folders.parquet of all *.jsonl in the current folder: a row for each folder of a report, with the name of its
-- host. What a rule left out has no row. path64 has the bytes of a path that is no UTF-8.
COPY (
    SELECT url_decode(regexp_extract(filename, '([^/]*)\.jsonl$', 1)) AS host,
           path, path64, depth, size, disk, files, folders, own_files, own_size, newest, errors, flags
    FROM read_json('*.jsonl', format = 'newline_delimited', filename = true, columns = {
        k: 'VARCHAR', path: 'VARCHAR', path64: 'VARCHAR', depth: 'BIGINT', size: 'BIGINT', disk: 'BIGINT',
        files: 'BIGINT', folders: 'BIGINT', own_files: 'BIGINT', own_size: 'BIGINT', newest: 'BIGINT',
        errors: 'BIGINT', flags: 'VARCHAR[]'})
    WHERE k = 'f' AND NOT list_contains(flags, 'leftout')
) TO 'folders.parquet' (FORMAT parquet);
