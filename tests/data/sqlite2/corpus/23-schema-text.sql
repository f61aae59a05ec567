-- start: new
-- Schema texts are kept exactly as typed (spacing, case, comments, quotes),
-- for tables, indexes, views and triggers; sqlite_master columns; names are
-- matched without regard to case.

create table t(a  integer);

CREATE   TABLE   Spaced ( x   TEXT ,  y  INT   )  ;

CREATE TABLE "Quoted Name"(a);

CREATE TABLE MiXeD(CamelCol, lower_col);

CREATE TABLE typed(a VARCHAR( 10 ), b DECIMAL(10,2), c DOUBLE PRECISION, d UNSIGNED BIG INT, e CHARACTER VARYING(3));

create table tabs	(x	integer	primary	key);

CREATE TABLE withcomment( -- a comment inside
  a, /* another */ b
);

CREATE TABLE defaults(a DEFAULT 'it''s', b DEFAULT -1, c DEFAULT CURRENT_TIME, d DEFAULT (1+1));

CREATE TABLE defaults(a DEFAULT 'it''s', b DEFAULT -1, c DEFAULT CURRENT_TIME);

CREATE TABLE checked(a CHECK(a > 0), b CONSTRAINT named NOT NULL, CHECK(b <> ''));

CREATE TABLE refs(a REFERENCES t(a), b, FOREIGN KEY(b) REFERENCES "Quoted Name"(a));

create index   Idx_A on t ( a  desc );

CREATE UNIQUE INDEX idx_mixed ON MiXeD(CamelCol, lower_col);

create view V1 as   select  a  from t   where a>0;

create trigger TR1 after insert on t begin insert into MiXeD values(new.a, 'x'); end;

CREATE TRIGGER tr2 BEFORE DELETE ON T FOR EACH ROW WHEN old.a>5 BEGIN
    DELETE FROM mixed WHERE camelcol = old.a;
END;

SELECT type, name, tbl_name, sql FROM sqlite_master ORDER BY rowid;

SELECT rootpage > 0 FROM sqlite_master WHERE type IN ('table', 'index') ORDER BY rowid;

INSERT INTO T VALUES(7);

INSERT INTO spaced VALUES('a', 1);

INSERT INTO "quoted name" VALUES(1);

INSERT INTO mixed(CAMELCOL, LOWER_COL) VALUES(2, 'y');

SELECT camelcol, Lower_Col FROM MIXED ORDER BY 1;

SELECT * FROM v1;

SELECT * FROM V1;

DELETE FROM t WHERE A = 7;

SELECT count(*) FROM mixed;

CREATE TABLE T(b);

CREATE TABLE sqlite_master(x);

CREATE TABLE sqlite_mine(x);

CREATE TABLE temp.x(a);

CREATE TEMP TABLE tmp(a);

CREATE TEMPORARY TABLE tmp2(a);

INSERT INTO tmp VALUES(1);

SELECT * FROM tmp;

SELECT type, name FROM sqlite_temp_master ORDER BY name;

SELECT name FROM sqlite_master WHERE name LIKE 'tmp%';

CREATE TABLE copy AS SELECT a, a * 2 AS doubled, 'c' || a FROM t;

SELECT sql FROM sqlite_master WHERE name = 'copy';

CREATE TABLE empty_cols();

CREATE TABLE dup(a, a);

CREATE TABLE keywords("select", "from", [order]);

INSERT INTO keywords VALUES(1, 2, 3);

SELECT "select", [from], "order" FROM keywords;

DROP TABLE Spaced;

DROP TABLE "QUOTED NAME";

DROP TABLE nosuch;

DROP TABLE sqlite_master;

SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name;

CREATE TABLE t2(
  id INTEGER PRIMARY KEY,
  note TEXT
);

SELECT sql FROM sqlite_master WHERE name = 't2';
