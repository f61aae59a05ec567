-- start: new
-- A trigger whose body writes to a table that is later dropped: the writes
-- that fire it fail, and the data and schema stay as they were.

CREATE TABLE t(a);

CREATE TABLE log(x);

CREATE TRIGGER t_log AFTER INSERT ON t BEGIN INSERT INTO log VALUES(new.a); END;

CREATE TRIGGER t_upd AFTER UPDATE ON t BEGIN UPDATE log SET x = new.a WHERE x = old.a; END;

INSERT INTO t VALUES(1);

SELECT * FROM log;

DROP TABLE log;

SELECT name FROM sqlite_master ORDER BY name;

INSERT INTO t VALUES(2);

UPDATE t SET a = 5;

DELETE FROM t;

SELECT * FROM t;

CREATE TABLE log(x);

INSERT INTO t VALUES(3);

SELECT * FROM log;

SELECT * FROM t ORDER BY rowid;

DROP TABLE t;

SELECT name FROM sqlite_master ORDER BY name;
