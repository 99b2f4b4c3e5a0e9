Pragma page_size = 512;
Vacuum;
Begin;
Insert Into PackInfo Values (12.5, 'Pack'), (Null, '');
Insert Into Dens Values (1, 3, 'Wolf Den', 'Wolf', 2023, 'Yes'), (2, Null, '', Null, 2024.5, 'No'), (30, -4, 'Åsen', 'Bear', 0, Null);
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 12)
Insert Into Scouts (Scout_SID, First_Name, Last_Name, MI, Birth_Date, Years_In_Scouts, Assigned_Den_SID, Note, Parent1_Use_Scout_Add, Boys_Life)
Select i * 10, 'Åke', ' Berg ' || i, Case When i % 2 Then 'A' End, Date('2015-01-30', i || ' months'), i / 4.0, i % 3, Case i When 4 Then '' When 5 Then Substr(Replace(Hex(Zeroblob(600)), '0', 'x'), 1, 1111) When 9 Then 'line 1' || Char(10) || 'line 2' End, i % 2, 1 From n;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 9)
Insert Into Adults (Adult_SID, First_Name, Last_Name, Birth_Date, Years_In_Other_Pack, Note) Select i, 'Éva', 'O''Neil ' || i, Null, i, Case i When 3 Then Substr(Replace(Hex(Zeroblob(400)), '0', 'y'), 1, 700) End From n;
Insert Into Insignias Values (1, 'Bobcat', 'Badge', 'First'), (2, 'Arrow Point', 'Arrow', Null), (200, '', Null, '');
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 60)
Insert Into Assigned_Awards_Scouts Select i % 12 * 10, i % 3, '2024-05-' || (10 + i % 20), 2024, 5, Null, Case When i % 3 = 0 Then i % 7 End From n;
Delete From Assigned_Awards_Scouts Where Assigned_SID > 57;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 20)
Insert Into Assigned_Awards_Adults Select i % 9, 2, '2024-06-07', 2024, 6 From n;
Insert Into Leader_Den_Assignments Values (1, 1, 'Den Leader', 1), (2, 0, 'Assistant', 2), (70000, 30, Null, 3);
Insert Into Leader_Pack_Assn Values ('Cubmaster', 3, 0, Null), ('Chair', 4, 1, Null), ('Chair', 5, 1, 17);
Insert Into Other_Purchase_List Values ('Pins', 3), ('Glue', Null);
Insert Into Purchase_List Values ('Bobcat', 'Badge', 2), ('Pins', Null, 1);
Create Table Mine(a Integer Primary Key, b, c Text Default 'none');
Insert Into Mine Values (-5, 0.25, 'x'), (7, X'00FF', Null), (5000000000, 'Åb', ''), (8, -6000000000, 'y');
Create Table Count_It(n Integer Primary Key AutoIncrement, t);
Insert Into Count_It Values (3, 'three'), (41, 'gone');
Delete From Count_It Where n = 41;
Create Index Mine_B On Mine(b);
CREATE VIEW "Own" AS SELECT "Den_SID" AS "D" FROM "Dens";
Insert Into Stored_Queries Values ('Own', 'Select Den_SID As D From Dens');
Commit;
