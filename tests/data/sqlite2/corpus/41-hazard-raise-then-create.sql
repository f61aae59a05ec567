-- start: new
-- A BEFORE INSERT trigger aborts the insert with RAISE(ABORT); the schema
-- change that follows must be kept, and so must the rows before it.

CREATE TABLE t(a);

CREATE TRIGGER t_no BEFORE INSERT ON t BEGIN SELECT RAISE(ABORT,'no'); END;

INSERT INTO t VALUES(1);

CREATE TABLE u(x);

INSERT INTO u VALUES('kept');

SELECT * FROM u;

SELECT name FROM sqlite_master ORDER BY name;

SELECT count(*) FROM t;

INSERT INTO t VALUES(2);

CREATE INDEX u_x ON u(x);

DROP TRIGGER t_no;

INSERT INTO t VALUES(3);

SELECT * FROM t;

SELECT * FROM u;
