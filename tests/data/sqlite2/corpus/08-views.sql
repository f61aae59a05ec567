-- start: new
-- Views: create, query, views over joins and aggregates, views of views,
-- writes refused, drop.

CREATE TABLE c(id INTEGER PRIMARY KEY, name TEXT, city TEXT);

CREATE TABLE o(id INTEGER PRIMARY KEY, cust INTEGER, amount NUMERIC);

INSERT INTO c VALUES(1, 'Ann', 'Oslo');

INSERT INTO c VALUES(2, 'Bob', 'Rome');

INSERT INTO c VALUES(3, 'Cat', NULL);

INSERT INTO o VALUES(1, 1, 10);

INSERT INTO o VALUES(2, 1, 2.5);

INSERT INTO o VALUES(3, 2, '7');

INSERT INTO o VALUES(4, 9, 1);

CREATE VIEW oslo AS SELECT * FROM c WHERE city = 'Oslo';

SELECT * FROM oslo;

CREATE VIEW totals AS SELECT c.name AS name, sum(o.amount) AS total, count(o.id) AS n FROM c LEFT JOIN o ON o.cust = c.id GROUP BY c.id;

SELECT * FROM totals ORDER BY name;

SELECT name FROM totals WHERE total > 5 ORDER BY total DESC;

CREATE VIEW big AS SELECT name FROM totals WHERE n > 0;

SELECT * FROM big ORDER BY 1;

CREATE VIEW pairs AS SELECT c.name, o.amount FROM c, o WHERE o.cust = c.id;

SELECT * FROM pairs ORDER BY 1, 2;

SELECT name, amount * 2 FROM pairs WHERE amount < 10 ORDER BY amount;

SELECT count(*), sum(amount) FROM pairs;

SELECT p.name, t.total FROM pairs p, totals t WHERE p.name = t.name ORDER BY p.amount;

INSERT INTO o VALUES(5, 3, 100);

SELECT * FROM totals ORDER BY name;

SELECT * FROM big ORDER BY 1;

INSERT INTO oslo VALUES(4, 'Dan', 'Oslo');

UPDATE oslo SET name = 'x';

DELETE FROM oslo;

CREATE VIEW oslo AS SELECT 1;

CREATE VIEW IF NOT EXISTS v2 AS SELECT 1;

CREATE VIEW sorted AS SELECT name, city FROM c ORDER BY city DESC;

SELECT * FROM sorted;

CREATE VIEW calc AS SELECT 1 + 1 AS two, 'a' || 'b', 7 / 2;

SELECT * FROM calc;

CREATE VIEW bad AS SELECT nosuch FROM c;

SELECT * FROM bad;

DROP VIEW bad;

SELECT * FROM bad;

DROP VIEW oslo;

SELECT * FROM oslo;

DROP VIEW oslo;

DROP TABLE totals;

DROP VIEW c;

CREATE VIEW c2 AS SELECT * FROM c WHERE id IN (SELECT cust FROM o);

SELECT name FROM c2 ORDER BY name;

DROP TABLE o;

SELECT * FROM pairs;

SELECT name FROM sqlite_master WHERE type = 'view' ORDER BY name;

CREATE TABLE o(id INTEGER PRIMARY KEY, cust INTEGER, amount NUMERIC);

INSERT INTO o VALUES(1, 2, 3);

SELECT * FROM pairs;

CREATE TEMP VIEW tv AS SELECT name FROM c WHERE id = 2;

SELECT * FROM tv;

SELECT type, name FROM sqlite_temp_master;
