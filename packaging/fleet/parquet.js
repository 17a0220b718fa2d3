// Makes folders.parquet of the reports in the folder of a run, and answers questions about it.
//
//   node parquet.js RUN             makes RUN/folders.parquet
//   node parquet.js RUN QUESTION    prints what the SQL in QUESTION finds, a row a line, with tabs between the columns
import { DuckDBInstance } from '@duckdb/node-api';
import { readFileSync } from 'node:fs';

const [run, question] = process.argv.slice(2);
if (!run) throw new Error('the folder of a run is missing');
const query = question ?? readFileSync(new URL('parquet.sql', import.meta.url), 'utf8');
process.chdir(run);
const connection = await (await DuckDBInstance.create()).connect();
const rows = (await connection.runAndReadAll(query)).getRows();
if (question) for (const row of rows) console.log(row.join('\t'));
