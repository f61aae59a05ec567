-- start: new
-- RAISE(ABORT/FAIL/IGNORE/ROLLBACK) from triggers, inside and outside
-- transactions; INSTEAD OF triggers on views; a trigger whose table is
-- dropped goes with it.

CREATE TABLE t(a INTEGER, b TEXT);

CREATE TABLE audit(msg TEXT);

CREATE TRIGGER t_abort BEFORE INSERT ON t WHEN new.a < 0
BEGIN
  SELECT RAISE(ABORT, 'negative a');
END;

CREATE TRIGGER t_ignore BEFORE INSERT ON t WHEN new.a = 0
BEGIN
  SELECT RAISE(IGNORE);
END;

CREATE TRIGGER t_fail BEFORE INSERT ON t WHEN new.a > 100
BEGIN
  SELECT RAISE(FAIL, 'too big');
END;

INSERT INTO t VALUES(1, 'one');

INSERT INTO t VALUES(-1, 'neg');

INSERT INTO t VALUES(0, 'zero');

INSERT INTO t VALUES(101, 'big');

SELECT * FROM t ORDER BY rowid;

CREATE TABLE src(a, b);

INSERT INTO src VALUES(2, 'two');

INSERT INTO src VALUES(0, 'skipped');

INSERT INTO src VALUES(3, 'three');

INSERT INTO src VALUES(200, 'stops');

INSERT INTO src VALUES(4, 'four');

INSERT INTO t SELECT a, b FROM src;

SELECT * FROM t ORDER BY rowid;

INSERT INTO src VALUES(-5, 'aborts');

DELETE FROM src WHERE a = 200;

INSERT INTO t SELECT a, b FROM src;

SELECT * FROM t ORDER BY rowid;

BEGIN;

INSERT INTO t VALUES(5, 'in transaction');

INSERT INTO t VALUES(-1, 'abort keeps the transaction');

INSERT INTO t VALUES(6, 'still in it');

COMMIT;

SELECT * FROM t ORDER BY rowid;

CREATE TRIGGER t_rollback BEFORE INSERT ON t WHEN new.a = 99
BEGIN
  SELECT RAISE(ROLLBACK, 'rolled back');
END;

BEGIN;

INSERT INTO t VALUES(7, 'lost');

INSERT INTO t VALUES(99, 'rollback');

INSERT INTO t VALUES(8, 'after rollback');

COMMIT;

SELECT * FROM t ORDER BY rowid;

CREATE TRIGGER t_upd BEFORE UPDATE ON t WHEN new.b = 'forbidden'
BEGIN
  SELECT RAISE(ABORT, 'forbidden update');
END;

UPDATE t SET b = 'forbidden' WHERE a = 1;

UPDATE t SET b = upper(b) WHERE a < 3;

SELECT * FROM t ORDER BY rowid;

CREATE TRIGGER t_del BEFORE DELETE ON t WHEN old.a = 1
BEGIN
  SELECT RAISE(IGNORE);
END;

DELETE FROM t WHERE a < 4;

SELECT * FROM t ORDER BY rowid;

CREATE TRIGGER t_after AFTER INSERT ON t
BEGIN
  INSERT INTO audit VALUES('after ' || new.a);
  SELECT RAISE(ABORT, 'after insert') WHERE new.a = 50;
END;

INSERT INTO t VALUES(50, 'undone');

INSERT INTO t VALUES(51, 'kept');

SELECT * FROM audit;

SELECT a FROM t WHERE a >= 50;

CREATE VIEW tv AS SELECT a, b FROM t;

CREATE TRIGGER tv_ins INSTEAD OF INSERT ON tv
BEGIN
  INSERT INTO audit VALUES('view insert ' || new.a || ' ' || new.b);
  INSERT INTO t VALUES(new.a * 10, new.b);
END;

CREATE TRIGGER tv_upd INSTEAD OF UPDATE ON tv
BEGIN
  INSERT INTO audit VALUES('view update ' || old.a || ' to ' || new.a);
END;

CREATE TRIGGER tv_del INSTEAD OF DELETE ON tv
BEGIN
  INSERT INTO audit VALUES('view delete ' || old.a);
END;

INSERT INTO tv VALUES(3, 'via view');

UPDATE tv SET a = a + 1 WHERE a = 30;

DELETE FROM tv WHERE a = 51;

SELECT * FROM audit ORDER BY rowid;

SELECT * FROM t ORDER BY rowid;

CREATE TRIGGER t_instead INSTEAD OF INSERT ON t BEGIN SELECT 1; END;

CREATE TRIGGER tv_before BEFORE INSERT ON tv BEGIN SELECT 1; END;

DROP TABLE t;

SELECT name FROM sqlite_master WHERE type = 'trigger' ORDER BY name;

INSERT INTO tv VALUES(1, 'x');

DROP VIEW tv;

SELECT name FROM sqlite_master ORDER BY name;
