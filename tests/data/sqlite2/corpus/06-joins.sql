-- start: new
-- Inner, left outer, self and three-table joins; joins comparing numeric
-- with text columns; USING and NATURAL.

CREATE TABLE dept(id INTEGER PRIMARY KEY, name TEXT, code);

CREATE TABLE emp(id INTEGER PRIMARY KEY, name TEXT, dept INTEGER, boss INTEGER, dcode TEXT);

CREATE TABLE proj(emp INTEGER, title TEXT);

INSERT INTO dept VALUES(1, 'Sales', '01');

INSERT INTO dept VALUES(2, 'Dev', 2);

INSERT INTO dept VALUES(3, 'Empty', 3.0);

INSERT INTO emp VALUES(1, 'Ann', 1, NULL, '1');

INSERT INTO emp VALUES(2, 'Bob', 2, 1, '02');

INSERT INTO emp VALUES(3, 'Cid', 2, 2, '2');

INSERT INTO emp VALUES(4, 'Dee', NULL, 2, NULL);

INSERT INTO emp VALUES(5, 'Eve', '1', 1, '3');

INSERT INTO proj VALUES(2, 'Parser');

INSERT INTO proj VALUES(3, 'Parser');

INSERT INTO proj VALUES(3, 'Writer');

INSERT INTO proj VALUES(9, 'Orphan');

SELECT emp.name, dept.name FROM emp, dept WHERE emp.dept = dept.id ORDER BY emp.id;

SELECT e.name, d.name FROM emp e JOIN dept d ON e.dept = d.id ORDER BY e.id;

SELECT e.name, d.name FROM emp AS e INNER JOIN dept AS d ON e.dept = d.id WHERE d.name = 'Dev' ORDER BY e.name;

SELECT e.name, d.name FROM emp e LEFT JOIN dept d ON e.dept = d.id ORDER BY e.id;

SELECT e.name, d.name FROM emp e LEFT OUTER JOIN dept d ON e.dept = d.id WHERE d.id IS NULL;

SELECT d.name, e.name FROM dept d LEFT JOIN emp e ON e.dept = d.id ORDER BY d.id, e.id;

SELECT d.name, count(e.id) FROM dept d LEFT JOIN emp e ON e.dept = d.id GROUP BY d.id ORDER BY d.id;

SELECT e.name, b.name FROM emp e, emp b WHERE e.boss = b.id ORDER BY e.id;

SELECT e.name, b.name FROM emp e LEFT JOIN emp b ON e.boss = b.id ORDER BY e.id;

SELECT b.name, count(*) FROM emp e JOIN emp b ON e.boss = b.id GROUP BY b.name ORDER BY b.name;

SELECT e.name, d.name, p.title FROM emp e, dept d, proj p WHERE e.dept = d.id AND p.emp = e.id ORDER BY e.id, p.title;

SELECT e.name, d.name, p.title FROM emp e JOIN dept d ON e.dept = d.id LEFT JOIN proj p ON p.emp = e.id ORDER BY e.id, p.title;

SELECT p.title, e.name FROM proj p LEFT JOIN emp e ON p.emp = e.id ORDER BY p.rowid;

SELECT e.name, d.name FROM emp e, dept d WHERE e.dcode = d.code ORDER BY e.id, d.id;

SELECT d.name, e.name FROM dept d, emp e WHERE d.code = e.dcode ORDER BY d.id, e.id;

SELECT e.name, d.name FROM emp e, dept d WHERE e.dcode + 0 = d.code + 0 ORDER BY e.id, d.id;

SELECT count(*) FROM emp, dept;

SELECT count(*) FROM emp CROSS JOIN dept;

SELECT e.name, d.name FROM emp e, dept d WHERE e.dept = d.id AND e.boss = 1 ORDER BY 1;

CREATE TABLE a(x, y);

CREATE TABLE b(x, z);

INSERT INTO a VALUES(1, 'a1');

INSERT INTO a VALUES(2, 'a2');

INSERT INTO a VALUES(NULL, 'a3');

INSERT INTO b VALUES(1, 'b1');

INSERT INTO b VALUES(1, 'b2');

INSERT INTO b VALUES(NULL, 'b3');

SELECT * FROM a NATURAL JOIN b ORDER BY y, z;

SELECT * FROM a JOIN b USING(x) ORDER BY y, z;

SELECT * FROM a LEFT JOIN b USING(x) ORDER BY y, z;

SELECT * FROM a, b ORDER BY a.rowid, b.rowid;

SELECT a.*, b.z FROM a LEFT JOIN b ON a.x = b.x AND b.z <> 'b1' ORDER BY a.rowid, b.rowid;

SELECT a.y, b.z FROM a LEFT JOIN b ON a.x = b.x WHERE b.z IS NULL ORDER BY a.y;

SELECT x FROM a, b;

SELECT * FROM a RIGHT JOIN b ON a.x = b.x;

SELECT * FROM a FULL OUTER JOIN b ON a.x = b.x;

SELECT * FROM a JOIN b ON nosuch = 1;

SELECT * FROM a AS t1 JOIN a AS t2 ON t1.x < t2.x ORDER BY t1.x, t2.x;
