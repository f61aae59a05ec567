-- start: new
-- Triggers: BEFORE/AFTER on INSERT, UPDATE, UPDATE OF and DELETE, FOR EACH
-- ROW, WHEN clauses, OLD and NEW, triggers writing to other tables.

CREATE TABLE acct(id INTEGER PRIMARY KEY, owner TEXT, balance NUMERIC);

CREATE TABLE log(seq INTEGER PRIMARY KEY, what TEXT, a, b);

CREATE TRIGGER acct_ins AFTER INSERT ON acct
BEGIN
  INSERT INTO log(what, a, b) VALUES('ins', new.id, new.balance);
END;

CREATE TRIGGER acct_bins BEFORE INSERT ON acct FOR EACH ROW
BEGIN
  INSERT INTO log(what, a, b) VALUES('before ins', new.id, new.owner);
END;

INSERT INTO acct VALUES(1, 'ann', 100);

INSERT INTO acct(owner, balance) VALUES('bob', '050');

SELECT * FROM log ORDER BY seq;

CREATE TRIGGER acct_upd AFTER UPDATE ON acct
BEGIN
  INSERT INTO log(what, a, b) VALUES('upd', old.balance, new.balance);
END;

CREATE TRIGGER acct_upd_owner BEFORE UPDATE OF owner ON acct
BEGIN
  INSERT INTO log(what, a, b) VALUES('owner', old.owner, new.owner);
END;

UPDATE acct SET balance = balance + 1;

UPDATE acct SET owner = upper(owner) WHERE id = 1;

UPDATE acct SET owner = owner, balance = 0 WHERE id = 2;

SELECT * FROM log ORDER BY seq;

DELETE FROM log;

CREATE TRIGGER acct_del BEFORE DELETE ON acct
BEGIN
  INSERT INTO log(what, a, b) VALUES('del', old.id, old.owner);
END;

CREATE TRIGGER acct_big AFTER UPDATE ON acct WHEN new.balance > 1000
BEGIN
  INSERT INTO log(what, a, b) VALUES('big', new.id, new.balance);
END;

UPDATE acct SET balance = 5000 WHERE id = 1;

UPDATE acct SET balance = 10 WHERE id = 1;

DELETE FROM acct WHERE id = 2;

SELECT * FROM log ORDER BY seq;

SELECT * FROM acct ORDER BY id;

CREATE TRIGGER acct_when BEFORE INSERT ON acct WHEN new.balance < 0
BEGIN
  INSERT INTO log(what, a) VALUES('negative', new.balance);
END;

INSERT INTO acct VALUES(3, 'cid', -5);

INSERT INTO acct VALUES(4, 'dee', 5);

SELECT what, a FROM log WHERE what IN ('negative', 'ins') ORDER BY seq;

DROP TRIGGER acct_bins;

DROP TRIGGER acct_when;

DROP TRIGGER acct_when;

DELETE FROM log;

CREATE TABLE stock(item TEXT, qty INTEGER);

CREATE TABLE sale(item TEXT, n INTEGER);

INSERT INTO stock VALUES('nut', 10);

INSERT INTO stock VALUES('bolt', 3);

CREATE TRIGGER sale_ins AFTER INSERT ON sale
BEGIN
  UPDATE stock SET qty = qty - new.n WHERE item = new.item;
  INSERT INTO log(what, a, b) VALUES('sold', new.item, new.n);
END;

CREATE TRIGGER stock_low AFTER UPDATE OF qty ON stock WHEN new.qty < 0
BEGIN
  DELETE FROM stock WHERE item = new.item;
END;

INSERT INTO sale VALUES('nut', 4);

INSERT INTO sale VALUES('bolt', 5);

INSERT INTO sale SELECT item, 1 FROM stock;

SELECT * FROM stock ORDER BY item;

SELECT what, a, b FROM log ORDER BY seq;

CREATE TRIGGER sale_del AFTER DELETE ON sale FOR EACH ROW
BEGIN
  UPDATE stock SET qty = qty + old.n WHERE item = old.item;
END;

DELETE FROM sale WHERE item = 'nut';

SELECT * FROM stock ORDER BY item;

SELECT name, tbl_name FROM sqlite_master WHERE type = 'trigger' ORDER BY name;

CREATE TRIGGER acct_ins AFTER INSERT ON acct BEGIN SELECT 1; END;

CREATE TRIGGER nowhere AFTER INSERT ON nosuch BEGIN SELECT 1; END;

CREATE TRIGGER badcol AFTER INSERT ON acct BEGIN INSERT INTO log(what) VALUES(new.nosuch); END;

INSERT INTO acct VALUES(9, 'x', 1);

CREATE TRIGGER on_master AFTER INSERT ON sqlite_master BEGIN SELECT 1; END;

CREATE TRIGGER chain1 AFTER INSERT ON log WHEN new.what = 'chain'
BEGIN
  INSERT INTO log(what, a) VALUES('chained', new.seq);
END;

INSERT INTO log(what) VALUES('chain');

SELECT what, a FROM log WHERE what LIKE 'chain%' ORDER BY seq;

CREATE TRIGGER self AFTER INSERT ON sale
BEGIN
  INSERT INTO sale VALUES('again', 0);
END;

INSERT INTO sale VALUES('once', 1);

SELECT item, n FROM sale ORDER BY rowid;

DROP TABLE stock;

SELECT name FROM sqlite_master WHERE type = 'trigger' ORDER BY name;

INSERT INTO sale VALUES('nut', 1);

SELECT item FROM sale ORDER BY rowid;
