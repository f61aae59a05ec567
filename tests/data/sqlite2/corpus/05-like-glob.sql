-- start: new
-- LIKE and GLOB: wildcards, case, escapes that 2.8 does not have, NULLs,
-- numbers matched as their text.

CREATE TABLE w(s TEXT, n INTEGER);

INSERT INTO w VALUES('apple', 1);

INSERT INTO w VALUES('Apple', 12);

INSERT INTO w VALUES('APPLE pie', 123);

INSERT INTO w VALUES('banana', 1.5);

INSERT INTO w VALUES('a_b', 10);

INSERT INTO w VALUES('a%b', 100);

INSERT INTO w VALUES('', NULL);

INSERT INTO w VALUES(NULL, 0);

INSERT INTO w VALUES('ändern', 7);

INSERT INTO w VALUES('x*y', 1e3);

INSERT INTO w VALUES('x?y', -1);

SELECT s FROM w WHERE s LIKE 'apple' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE 'a%' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE '%e' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE '%pp%' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE 'a_b' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE '_____' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE '%' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE '' ORDER BY rowid;

SELECT s FROM w WHERE s NOT LIKE '%a%' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE 'Ä%' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE '_ndern' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB 'a*' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB 'A*' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB '?pple' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB '[ab]*' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB '[^ab]*' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB '*[A-Z]*' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB 'x[*]y' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB 'x[?]y' ORDER BY rowid;

SELECT s FROM w WHERE s NOT GLOB '*a*' ORDER BY rowid;

SELECT s FROM w WHERE s GLOB '?ndern' ORDER BY rowid;

SELECT n FROM w WHERE n LIKE '1%' ORDER BY rowid;

SELECT n FROM w WHERE n GLOB '1*' ORDER BY rowid;

SELECT n FROM w WHERE n LIKE '%.%' ORDER BY rowid;

SELECT 'abc' LIKE 'ABC', 'abc' GLOB 'ABC', 'a' LIKE NULL, NULL LIKE 'a', NULL GLOB NULL;

SELECT 123 LIKE '12_', 1.50 LIKE '1.5%', -0 LIKE '-0', 1e3 GLOB '1e*';

SELECT like('a%', 'abc'), glob('a*', 'abc'), like('_', ''), glob('', '');

SELECT s FROM w WHERE s LIKE 'a\%b' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE 'a%b' ORDER BY rowid;

SELECT s FROM w WHERE s LIKE 'a%b' ESCAPE '\' ORDER BY rowid;

SELECT count(*) FROM w WHERE s LIKE '%';

SELECT count(*) FROM w WHERE s GLOB '*';

SELECT s LIKE 'a%' AS m, count(*) FROM w GROUP BY m ORDER BY m;
