-- start: new
-- Arithmetic: 32-bit integer results, integer division and remainder,
-- overflow, mixed integer/real, float formatting with 15 digits, unary
-- operators, precedence, and results stored into columns.

SELECT 7 / 2, -7 / 2, 7 / -2, 7 % 3, -7 % 3, 7 % -3;

SELECT 7.0 / 2, 7 / 2.0, 7 / 2.5, 1 / 3.0, 2 / 3.0, 10 / 4;

SELECT 2147483647 + 1, 2147483647 * 2, -2147483648 - 1, 65536 * 65536, 46341 * 46341;

SELECT 2147483647 + 1.0, 2147483648 + 1, 3000000000 * 2, 1000000 * 1000000;

SELECT 0.1 + 0.2, 0.1 * 3, 1.1 * 1.1, 100.0 / 3, 2.0 / 3 * 3;

SELECT 1e15 + 0.3, 1e16 + 1, 123456789012345678, 1.5e300 * 1e10, -1e308 * 10;

SELECT 1e-7 * 1, 0.0001 * 1, 0.00001 * 1, 123456.789 * 1, 1234567890123.5 * 1;

SELECT 3 - -2, - -3, -(-3), +-3, -+3, - 3 * 2;

SELECT 1 + 2 * 3, (1 + 2) * 3, 10 - 4 - 3, 100 / 10 / 5, 2 * 3 % 4, 1 - 2 + 3;

SELECT 5 & 3, 5 | 3, ~5, 1 << 4, 256 >> 2, -1 >> 1, 1 << 31, 1 << 32;

SELECT 1 + '2', '3' * '4', '10' / '4', '10' / 4.0, '1e2' * 1, 'x' * 5;

SELECT 2 || 3, 2 + 3 || 4, 1.0 || '', 1e3 || '', -0 || '', 007 || '';

SELECT 10 % 3.5, 10.5 % 3, -10.5 % 3, 7.9 % 2, 2147483647 % 10;

SELECT 1 = 1 + 0, 1 + 1 = 2, 3 > 2 > 1, 1 < 2 < 3, 2 = 2 = 1;

SELECT abs(-2147483648), abs(-5), abs(-5.5), abs('-3'), abs('x');

SELECT round(2.5), round(3.5), round(-2.5), round(0.125, 2), round(1234.5678, -2), round(1.0/3, 20);

SELECT round(2.675, 2), round(5), round(99.99, 1), round(-0.4), round('1.27', 1);

CREATE TABLE calc(a INTEGER, b REAL, c TEXT, d);

INSERT INTO calc VALUES(7 / 2, 7 / 2.0, 7 / 2, 7 % 2);

INSERT INTO calc VALUES(1 / 3.0, 2 / 3.0, 10 / 3.0, 1e20 * 10);

INSERT INTO calc VALUES(2147483647 + 1, 0.1 + 0.2, 1.0 * 5, 4400 / 10.0);

INSERT INTO calc VALUES(-0 * 1, -0.0 + 0, 0 * -1.0, 5 - 5.0);

INSERT INTO calc VALUES(1e3 + 0, 1e-3 + 0, 1e300 * 1e300, -1e300 * 1e300);

SELECT * FROM calc ORDER BY rowid;

SELECT a + b, a * c, c - d, d / a FROM calc ORDER BY rowid;

UPDATE calc SET a = a * 1000, d = d + 0.5;

SELECT a, d FROM calc ORDER BY rowid;

UPDATE calc SET c = c / 0;

SELECT c FROM calc ORDER BY rowid;

CREATE TABLE cnt(n INTEGER);

INSERT INTO cnt VALUES(2147483646);

UPDATE cnt SET n = n + 1;

UPDATE cnt SET n = n + 1;

UPDATE cnt SET n = n + 1;

SELECT n FROM cnt;

UPDATE cnt SET n = n * 1.0 + 1;

SELECT n, n / 2, n % 7 FROM cnt;

UPDATE cnt SET n = 1.23456789012345678;

SELECT n, n * 1, n + 0 FROM cnt;

UPDATE cnt SET n = n * 1;

SELECT n FROM cnt;

SELECT 1000000000 + 1000000000 + 1000000000, 3 * 1000000000, (2147483647 + 1) / 2;

SELECT 2147483648 / 2, 2147483648 * 1, 2147483647.0 + 1, -2147483649 / 1;

SELECT 5 / 0.0, -5 / 0.0, 0 / 0.0, 1e308 + 1e308, -(1e308 + 1e308);

SELECT 1 / 1e-320, 1e-320 * 1, 4.9e-324 * 1, 1.7976931348623157e308 * 1;
