-- start: new
-- Scalar, EXISTS, IN and correlated subqueries; subqueries in FROM.

CREATE TABLE item(id INTEGER PRIMARY KEY, grp TEXT, price NUMERIC);

INSERT INTO item VALUES(1, 'a', 10);

INSERT INTO item VALUES(2, 'a', 20);

INSERT INTO item VALUES(3, 'b', 5);

INSERT INTO item VALUES(4, 'b', '5.0');

INSERT INTO item VALUES(5, 'c', NULL);

INSERT INTO item VALUES(6, NULL, 7.5);

SELECT (SELECT max(price) FROM item);

SELECT (SELECT price FROM item WHERE id = 99);

SELECT (SELECT price FROM item ORDER BY id);

SELECT (SELECT price FROM item ORDER BY id DESC);

SELECT id, price - (SELECT min(price) FROM item) FROM item ORDER BY id;

SELECT id FROM item WHERE price > (SELECT avg(price) FROM item) ORDER BY id;

SELECT id FROM item WHERE price = (SELECT min(price) FROM item) ORDER BY id;

SELECT EXISTS (SELECT 1 FROM item WHERE grp = 'a'), EXISTS (SELECT 1 FROM item WHERE grp = 'z');

SELECT i.id FROM item i WHERE EXISTS (SELECT 1 FROM item j WHERE j.grp = i.grp AND j.id <> i.id) ORDER BY i.id;

SELECT i.id, (SELECT count(*) FROM item j WHERE j.grp = i.grp) FROM item i ORDER BY i.id;

SELECT i.id FROM item i WHERE price = (SELECT max(price) FROM item j WHERE j.grp = i.grp) ORDER BY i.id;

SELECT grp, total FROM (SELECT grp, sum(price) AS total FROM item GROUP BY grp) ORDER BY total DESC;

SELECT count(*) FROM (SELECT * FROM item WHERE price > 6);

SELECT x.id FROM (SELECT id, price FROM item) AS x WHERE x.price NOTNULL ORDER BY x.price, x.id;

SELECT * FROM (SELECT grp FROM item UNION SELECT 'z') ORDER BY 1;

SELECT id FROM item WHERE grp IN (SELECT grp FROM item GROUP BY grp HAVING count(*) > 1) ORDER BY id;

SELECT id FROM item WHERE id IN (SELECT id + 1 FROM item WHERE price > 7) ORDER BY id;

SELECT (SELECT count(*) FROM item) + (SELECT count(*) FROM item WHERE price IS NULL);

SELECT (SELECT grp FROM item WHERE id = 3) || (SELECT price FROM item WHERE id = 4);

SELECT id FROM item WHERE (SELECT count(*) FROM item) = 6 AND id < 3 ORDER BY id;

SELECT (SELECT id, grp FROM item);

SELECT * FROM item WHERE id = (SELECT nosuch FROM item);

SELECT i.id FROM item i WHERE i.price IN (SELECT price FROM item j WHERE j.id <> i.id) ORDER BY i.id;

SELECT max(id) FROM item WHERE id < (SELECT max(id) FROM item);

SELECT (SELECT max(price) FROM item WHERE grp = 'a') > (SELECT max(price) FROM item WHERE grp = 'b');

-- Subqueries inside writes.

UPDATE item SET price = (SELECT max(price) FROM item) WHERE id = 5;

SELECT price FROM item WHERE id = 5;

INSERT INTO item SELECT id + 10, 'copy', price * 2 FROM item WHERE grp = 'a';

SELECT * FROM item WHERE id > 10 ORDER BY id;

DELETE FROM item WHERE id IN (SELECT id FROM item WHERE price >= 20);

SELECT id FROM item ORDER BY id;

DELETE FROM item WHERE price < (SELECT avg(price) FROM item);

SELECT id, price FROM item ORDER BY id;

INSERT INTO item(id, price) VALUES((SELECT max(id) FROM item) + 1, (SELECT count(*) FROM item));

SELECT * FROM item ORDER BY id;
