-- start: person.db
-- The person fixture (made by 2.8.13): its view, its AFTER UPDATE trigger
-- and log table, its index on name, and values of the typed columns
-- compared, sorted and changed.

SELECT count(*), min(id), max(id) FROM person;

SELECT id, name FROM person_active ORDER BY id LIMIT 5;

SELECT count(*) FROM person_active;

SELECT * FROM person_log;

SELECT id, name FROM person WHERE name = 'Kai0';

SELECT id, name FROM person WHERE name LIKE 'kai%' ORDER BY id;

SELECT id, name FROM person WHERE name > 'S' ORDER BY name;

SELECT id, weight FROM person WHERE weight = 73 ORDER BY id;

SELECT id, weight FROM person WHERE weight BETWEEN 90 AND 100 ORDER BY weight DESC, id;

SELECT id, born FROM person WHERE born < '1950' ORDER BY born;

SELECT active, count(*) FROM person GROUP BY active ORDER BY active;

SELECT id FROM person WHERE active = '1' ORDER BY id LIMIT 3;

SELECT id FROM person WHERE active = 1.0 ORDER BY id LIMIT 3;

SELECT note, count(*) FROM person GROUP BY note ORDER BY note;

SELECT avg(weight), sum(weight), min(weight), max(weight) FROM person;

SELECT substr(born, 1, 4) AS year, count(*) FROM person GROUP BY year HAVING count(*) > 1 ORDER BY year;

SELECT id FROM person ORDER BY weight, id LIMIT 5;

SELECT id FROM person ORDER BY name DESC LIMIT 5;

UPDATE person SET name = name || '*' WHERE id IN (1, 2);

SELECT * FROM person_log ORDER BY rowid;

UPDATE person SET weight = weight + 0.05 WHERE id < 4;

SELECT id, weight FROM person WHERE id < 4 ORDER BY id;

SELECT count(*) FROM person_log;

INSERT INTO person VALUES(41, 'New', '2000-01-01', 70, 1, 'added');

INSERT INTO person(name, born) VALUES('Auto', '2001-02-03');

SELECT id, name, active FROM person WHERE id > 40 ORDER BY id;

SELECT id, name FROM person_active WHERE id > 40;

DELETE FROM person WHERE active = 0;

SELECT count(*) FROM person;

SELECT count(*) FROM person_log;

UPDATE person SET active = NOT active WHERE active NOTNULL;

SELECT count(*) FROM person_active;

DROP TRIGGER person_upd;

UPDATE person SET name = 'nobody logs this' WHERE id = 41;

SELECT count(*) FROM person_log;

CREATE TRIGGER person_del AFTER DELETE ON person BEGIN INSERT INTO person_log VALUES(old.id, 'deleted ' || old.name); END;

DELETE FROM person WHERE id > 40;

SELECT * FROM person_log WHERE what LIKE 'deleted%' ORDER BY at;

DROP VIEW person_active;

SELECT name FROM sqlite_master ORDER BY name;

SELECT id, name FROM person WHERE name = 'Kai0*';
