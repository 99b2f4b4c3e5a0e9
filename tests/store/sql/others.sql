-- Another tool's table with a field of each kind, one without fields, and stored queries. A query is replaced by its text
-- wherever it is named; the view is for other tools.
Create Table Kinds(A INT, B DOUBLE, C DATE, D BOOLEAN, E LONGTEXT, F TEXT(3), G SMALLINT, H BIGINT, I DATETIME, J FLOAT DEFAULT 2.5, K date, L BOOLEAN DEFAULT 1, M, N VARCHAR (5) DEFAULT 'it''s', O INTEGER PRIMARY KEY AUTOINCREMENT);
Insert Into Kinds Values
(1, 2, '2024-01-02', 1, 'e', 'f', 3, 4, '2024-01-02 03:04:05', 0.5, '2024-01-03', 0, 5, 'n', 7),
(Null, Null, Null, 0, Null, Null, Null, Null, Null, Null, Null, 1, Null, Null, 8);
Create Table Bare("~");
Create Table Strings(A STRING(5), B SMALLINT (3));
Insert Into Strings Values (7, 8);
Create Table "Sums from old"(A INT);
Create View Tools As Select abs(-1) A, avg(SID) B, coalesce(Null, 2) C, count(*) D, datetime('2020-01-02') E, 'ab' Glob 'a*' F, ifnull(Null, 3) G, iif(1, 4, 5) H, instr('ab', 'b') I, length('abc') J, lower('A') K, ltrim(' x') L, max(SID) M, min(SID) N, nullif(1, 1) O, round(1.4) P, rtrim('x ') Q, replace('a', 'a', 'b') R, substr('abc', 2, 1) S, sum(SID) T, total(SID) U, trim(' y ') V, typeof(1) W, unicode('a') X, upper('b') Y, ucase('c') Z From People;
Create View Forbidden As Select hex('a') H;
Create View "First" As Select 0;
Create View Second As Select 0;
Create View Dens As Select 1 As SID, 9 As Den;
Create View Lost As Select 0;
Create View Self As Select * From Self;
Create View Shown As Select 0;
Insert Into Stored_Queries Values
('First', 'Select "N/A" As A, SID From Second'),
('Second', 'Select * From Older'),
('Dens', 'Select SID, Den From People Where Den > 0 Order By SID Desc'),
('Lost', 'Select * From Gone'),
('Self', 'Select * From Self'),
('Shown', 'Select P.[Last Name] & "" As Name, Max(P.Born) As Latest, Max(Mail = True) As Any From (Select [Last Name], Born, Mail From People Union All Select "ØST", #1/2/2020#, No From People) As P Group By P.[Last Name] & ""');
