-- start: new
-- BEGIN/COMMIT/ROLLBACK, errors inside a transaction, schema changes
-- rolled back, nested BEGIN, and a transaction left open when the file is
-- closed (its changes must not reach the file).

CREATE TABLE t(a INTEGER PRIMARY KEY, b TEXT UNIQUE);

BEGIN;

INSERT INTO t VALUES(1, 'one');

INSERT INTO t VALUES(2, 'two');

COMMIT;

SELECT * FROM t ORDER BY a;

BEGIN TRANSACTION;

INSERT INTO t VALUES(3, 'three');

SELECT count(*) FROM t;

ROLLBACK;

SELECT * FROM t ORDER BY a;

BEGIN;

INSERT INTO t VALUES(3, 'three');

INSERT INTO t VALUES(4, 'one');

INSERT INTO t VALUES(5, 'five');

END;

SELECT * FROM t ORDER BY a;

BEGIN;

BEGIN;

COMMIT;

COMMIT;

ROLLBACK;

BEGIN;

CREATE TABLE inner_t(x);

INSERT INTO inner_t VALUES(1);

CREATE INDEX t_b ON t(b);

ROLLBACK;

SELECT name FROM sqlite_master ORDER BY name;

SELECT * FROM inner_t;

BEGIN;

DROP TABLE t;

SELECT count(*) FROM sqlite_master;

ROLLBACK;

SELECT * FROM t ORDER BY a;

BEGIN;

UPDATE t SET b = b || '!' WHERE a < 3;

DELETE FROM t WHERE a = 5;

SELECT * FROM t ORDER BY a;

ROLLBACK;

SELECT * FROM t ORDER BY a;

BEGIN;

INSERT INTO t VALUES(6, 'six');

INSERT INTO t VALUES(6, 'six again');

INSERT OR FAIL INTO t VALUES(7, 'one');

INSERT INTO t VALUES(8, 'eight');

COMMIT;

SELECT * FROM t ORDER BY a;

BEGIN;

INSERT INTO t VALUES(9, 'nine');

INSERT OR ROLLBACK INTO t VALUES(10, 'nine');

INSERT INTO t VALUES(11, 'eleven');

SELECT * FROM t WHERE a > 8 ORDER BY a;

ROLLBACK;

BEGIN;

SELECT nosuch FROM t;

INSERT INTO t VALUES(12, 'twelve');

COMMIT;

SELECT * FROM t WHERE a > 8 ORDER BY a;

BEGIN DEFERRED;

BEGIN TRANSACTION tx1;

COMMIT TRANSACTION tx1;

BEGIN ON CONFLICT IGNORE;

INSERT INTO t VALUES(1, 'ignored by the transaction default');

INSERT INTO t VALUES(13, 'thirteen');

COMMIT;

SELECT * FROM t WHERE a IN (1, 13) ORDER BY a;

BEGIN ON CONFLICT REPLACE;

INSERT INTO t VALUES(1, 'replaced');

INSERT OR ABORT INTO t VALUES(2, 'replaced');

COMMIT;

SELECT * FROM t WHERE a < 3 ORDER BY a;

CREATE TABLE log(x);

BEGIN;

INSERT INTO log VALUES('never committed');

INSERT INTO t VALUES(99, 'open at close');
