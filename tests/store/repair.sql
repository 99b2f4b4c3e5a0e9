Begin;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 1500)
Insert Into Scouts (Scout_SID, First_Name, Last_Name, Birth_Date, Years_In_Scouts, Note)
Select i, 'Åke ' || i, 'Berg', '2015-01-02', i / 2.0, Case When i % 50 = 0 Then
Substr(Replace(Hex(Zeroblob(4060)), '0', 'x'), 1, 8064 + i / 50) Else 'note' End From n;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 400)
Insert Into Adults (Adult_SID, Last_Name) Select i, 'Berg ' || i From n;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 6000)
Insert Into Assigned_Awards_Scouts Select i % 1500, i % 120, '2024-05-06', 2024, 5, Null, Case When i % 3 = 0 Then i % 7 End From n;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 900)
Insert Into Assigned_Awards_Adults Select i, 3, '2024-05-06', 2024, 5 From n;
-- their numbers stay used
Delete From Assigned_Awards_Scouts Where Assigned_SID > 5990;
-- leaves empty pages
Delete From Scouts Where Scout_SID Between 700 And 900;
Insert Into PackInfo Values (12, 'Pack');
Commit;
