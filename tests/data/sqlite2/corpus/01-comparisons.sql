-- start: new
-- Comparisons decided by the declared type of a column (numeric or text),
-- by literal kinds (number or string) and between two columns.

CREATE TABLE n(x INTEGER, y REAL, z);

CREATE TABLE s(x TEXT, y VARCHAR(10), z CHAR(3));

INSERT INTO n VALUES(1, 1, 1);

INSERT INTO n VALUES(2, '2', 2.0);

INSERT INTO n VALUES(10, 10.0, '10');

INSERT INTO n VALUES(9, 9, 9);

INSERT INTO n VALUES('010', '1e1', 1e1);

INSERT INTO n VALUES('abc', 'ABC', 'b');

INSERT INTO n VALUES('', NULL, ' 5');

INSERT INTO n VALUES(-1, -0.5, -0);

INSERT INTO s SELECT x, y, z FROM n;

SELECT x FROM n WHERE x = 10 ORDER BY rowid;

SELECT x FROM n WHERE x = '10' ORDER BY rowid;

SELECT x FROM n WHERE x = '010' ORDER BY rowid;

SELECT x FROM s WHERE x = 10 ORDER BY rowid;

SELECT x FROM s WHERE x = '10' ORDER BY rowid;

SELECT x FROM s WHERE x = '010' ORDER BY rowid;

SELECT x FROM n WHERE x > 2 ORDER BY rowid;

SELECT x FROM s WHERE x > 2 ORDER BY rowid;

SELECT x FROM n WHERE x > '2' ORDER BY rowid;

SELECT x FROM s WHERE x > '2' ORDER BY rowid;

SELECT x FROM n WHERE x < 'abc' ORDER BY rowid;

SELECT x FROM s WHERE x < 'abc' ORDER BY rowid;

SELECT x FROM n WHERE x >= 'a' ORDER BY rowid;

SELECT x FROM n WHERE x = '' ORDER BY rowid;

SELECT x FROM s WHERE x = '' ORDER BY rowid;

SELECT x FROM n WHERE x <= 0 ORDER BY rowid;

SELECT x FROM s WHERE x <= 0 ORDER BY rowid;

SELECT y FROM n WHERE y = 10 ORDER BY rowid;

SELECT y FROM s WHERE y = 10 ORDER BY rowid;

SELECT z FROM n WHERE z = 10 ORDER BY rowid;

SELECT z FROM s WHERE z = '10' ORDER BY rowid;

SELECT z FROM n WHERE z = 5 ORDER BY rowid;

SELECT z FROM n WHERE z = 0 ORDER BY rowid;

SELECT z FROM s WHERE z = '-0' ORDER BY rowid;

SELECT x, y FROM n WHERE x = y ORDER BY rowid;

SELECT x, y FROM s WHERE x = y ORDER BY rowid;

SELECT x, z FROM n WHERE x < z ORDER BY rowid;

SELECT x, z FROM s WHERE x < z ORDER BY rowid;

SELECT n.x, s.x FROM n, s WHERE n.x = s.x AND n.rowid < s.rowid ORDER BY n.rowid, s.rowid;

SELECT n.rowid, s.rowid FROM n, s WHERE n.y = s.y ORDER BY 1, 2;

SELECT 1 = 1.0, '1' = '1.0', 1 = '1.0', '1.0' = 1, 1e1 = 10, '1e1' = '10';

SELECT 2 < 10, '2' < '10', 2 < '10', '2' < 10, 'a' < 'B', 'a' < 'b';

SELECT 'abc' < 'abd', 'abc' > 'ab', '' < 'a', '' < 0, 'x' > 1000000;

SELECT -0 = 0, '-0' = '0', '-0' = 0, 0.0 = -0.0, '+5' = 5, ' 5' = 5;

SELECT NULL = NULL, NULL <> 1, NULL < 1, 1 != NULL, NULL == NULL;

SELECT 1 <> 2, 1 != 1, 3 == 3, 3 = 3.0, 5 >= 5, 5 <= 4;

SELECT x FROM n WHERE x + 0 = 10 ORDER BY rowid;

SELECT x FROM s WHERE x + 0 = 10 ORDER BY rowid;

SELECT x FROM n WHERE x || '' = '10' ORDER BY rowid;

SELECT x FROM n WHERE x || '' = 10 ORDER BY rowid;

SELECT x FROM s WHERE x < 9.5 ORDER BY rowid;

SELECT x FROM s WHERE x < '9.5' ORDER BY rowid;

SELECT x FROM n WHERE NOT x = 10 ORDER BY rowid;

SELECT x FROM n WHERE x = 1 OR x = 2 AND y = 2 ORDER BY rowid;

SELECT count(*) FROM n WHERE x ISNULL;

SELECT count(*) FROM n WHERE y ISNULL;

SELECT count(*) FROM n WHERE y NOTNULL;

SELECT x FROM n WHERE y IS NULL;

SELECT x FROM n WHERE y IS NOT NULL AND y < 1 ORDER BY rowid;
