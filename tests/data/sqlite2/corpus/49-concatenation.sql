-- start: new
-- What || joins: numbers computed from stored texts join as 2.8 prints
-- them, number literals as they were written, and the operand of || is
-- found whatever it is (a CASE, a function, a qualified column, a trigger's
-- NEW value, a view's column).

CREATE TABLE t(a NUMERIC, b TEXT, c);

INSERT INTO t VALUES('4221.0', '4221.0', '-0.50');

INSERT INTO t VALUES('7', '1e3', 'abc');

SELECT 'x' || 1.50, 'x' || -1.50, 'x' || +1.50, 1.0 || 'y', 'x' || 1e3 FROM t ORDER BY rowid;

SELECT 'x' || -a, 'x' || -b, 'x' || -c, 'x' || (a + 0), 'x' || a * 2 FROM t ORDER BY rowid;

SELECT -a || -a || (-a), 'p' || CASE WHEN a > 5 THEN -a ELSE 0 END || 'q' FROM t ORDER BY rowid;

SELECT upper('a') || -1.5 * 2, t.a || 'z', 'x' || - - a, 'x' || -'3.0', 3 - 1 || '0' FROM t ORDER BY rowid;

SELECT 'x' || abs(-a), 'x' || (SELECT -a FROM t WHERE rowid = 1), a || -c FROM t ORDER BY rowid;

CREATE TABLE log(v);

CREATE TRIGGER t_ins AFTER INSERT ON t BEGIN INSERT INTO log VALUES('new ' || -new.a || ' ' || new.c); END;

INSERT INTO t VALUES('12.0', 'x', 'y');

SELECT * FROM log;

CREATE VIEW v AS SELECT 'x' || -a AS j FROM t;

SELECT * FROM v ORDER BY j;

UPDATE t SET c = c || -a WHERE rowid = 2;

SELECT * FROM t ORDER BY rowid;
