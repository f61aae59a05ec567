-- start: new
-- The built-in functions of 2.8 and those it does not have: length, substr,
-- upper, lower, round, abs, coalesce, ifnull, nullif, min/max with several
-- arguments, random, last_insert_rowid, change_count, typeof, quote, soundex,
-- sqlite_version, like/glob as functions, CASE.

CREATE TABLE f(a, b TEXT, c INTEGER);

INSERT INTO f VALUES(1, 'Hello', -3);

INSERT INTO f VALUES(2.5, 'world', 0);

INSERT INTO f VALUES('x', '', NULL);

SELECT length(a), length(b), length(c), length(12345), length(-1.50), length(1e3) FROM f ORDER BY rowid;

SELECT substr(b, 1, 2), substr(b, 2, 10), substr(b, 0, 2), substr(b, -3, 2), substr(b, 10, 2) FROM f ORDER BY rowid;

SELECT substr('abcdef', 3, 100), substr('abcdef', -1, 1), substr('abcdef', 2, 0), substr('abcdef', 2, -1);

SELECT substr(12345, 2, 3), substr(1.5, 1, 2), substr('abc', '2', '1');

SELECT upper(b), lower(b), upper(a), lower(1e3) FROM f ORDER BY rowid;

SELECT abs(c), abs(a), abs(-0), abs(-1e3), abs('-007') FROM f ORDER BY rowid;

SELECT round(a), round(a, 1), round(c, 2), round(-a) FROM f ORDER BY rowid;

SELECT coalesce(NULL, c, 'none'), coalesce(c, a), coalesce(NULL, NULL) FROM f ORDER BY rowid;

SELECT coalesce(c) FROM f;

SELECT coalesce();

SELECT ifnull(c, 'null c'), ifnull(b, 'x'), nullif(c, 0), nullif(b, '') FROM f ORDER BY rowid;

SELECT ifnull(1);

SELECT max(a, c), min(a, c), max(a, b, c), min(1, 2, 'a'), max(3) FROM f ORDER BY rowid;

SELECT typeof(a), typeof(b), typeof(c), typeof(a + 1), typeof(b || ''), typeof(1), typeof('1') FROM f ORDER BY rowid;

SELECT sqlite_version();

SELECT length(random()) > 0, random() = random(), typeof(random());

SELECT quote(a), quote(b), quote(c) FROM f ORDER BY rowid;

SELECT soundex('Robert'), soundex('Rupert'), soundex(''), soundex('Tymczak');

SELECT like('h%', b), glob('H*', b), like(b, 'h%') FROM f ORDER BY rowid;

SELECT last_insert_rowid();

INSERT INTO f VALUES(4, 'four', 4);

SELECT last_insert_rowid();

SELECT change_count();

SELECT last_statement_change_count();

SELECT replace('aaa', 'a', 'b');

SELECT trim('  x  ');

SELECT ltrim('  x'), rtrim('x  ');

SELECT instr('abc', 'b');

SELECT hex('a');

SELECT char(65);

SELECT unicode('A');

SELECT total(a) FROM f;

SELECT group_concat(b) FROM f;

SELECT date('now') IS NOT NULL;

SELECT datetime('2004-01-01 12:00:00');

SELECT julianday('2004-01-01');

SELECT strftime('%Y', '2004-06-01');

SELECT printf('%d', 5);

SELECT zeroblob(1);

SELECT randomblob(2);

SELECT length();

SELECT upper('a', 'b');

SELECT substr('abc');

SELECT round(1, 2, 3);

SELECT nosuchfunc(1);

SELECT CASE WHEN c > 0 THEN 'pos' WHEN c < 0 THEN 'neg' ELSE 'zero or null' END FROM f ORDER BY rowid;

SELECT CASE b WHEN 'Hello' THEN 1 WHEN 'world' THEN 2 END FROM f ORDER BY rowid;

SELECT CASE 1 WHEN 1.0 THEN 'numeric match' ELSE 'no' END, CASE '1' WHEN '1.0' THEN 'match' ELSE 'text mismatch' END;

SELECT CAST(a AS INTEGER) FROM f;

SELECT a FROM f WHERE a REGEXP 'x';

SELECT min(b) FROM f WHERE c > 100;

SELECT upper(substr(b, 1, 1)) || lower(substr(b, 2, 100)) FROM f ORDER BY rowid;

SELECT length(upper(b) || lower(b)), abs(length(b) - 10) FROM f ORDER BY rowid;
