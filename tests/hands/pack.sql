-- Ada and Bo are scouts of dens 1 and 2, Cy has no den; of the adults, Ann leads den 1.
Insert Into Dens (Den_SID, Den_Number, Den_Name, Den_Type, Active) Values (1, 1, 'One', 'Tiger', 'Y'),
    (2, 3, 'Three', 'Wolf', 'Y'), (3, 2, 'Two', 'Bear', 'N');
Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID, Birth_Date, Pack_Start_Date, Note,
    Years_In_Scouts, Years_In_Other_Pack, Tigar, Parent_Name1) Values
    (1, 'Ada', 'Ash', 'Y', 1, '2015-01-02', '2024-01-02', 'n', 1, 0, 'N', 'Pa'),
    (2, 'Bo', 'Birch', 'Y', 2, '2015-01-03', '2024-01-03', 'n', 1, 0, 'N', 'Pa'),
    (3, 'Cy', 'Cedar', 'Y', Null, '2015-01-04', '2024-01-04', 'n', 1, 0, 'N', 'Pa');
Insert Into Adults (Adult_SID, First_Name, Last_Name, Active, Birth_Date, Pack_Start_Date, Note) Values
    (1, 'Ann', 'Ash', 'Y', '1980-01-02', '2024-01-02', 'n'), (2, 'Bob', 'Birch', 'Y', '1980-01-03', '2024-01-03', 'n');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values (1, 1, 'Den Leader', 5);
Update Adults Set Assigned_Den_SID = Adult_SID;
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (1, 'Art', 'Pin'), (2, 'Bike', 'Pin'),
    (3, 'Chess', 'Patch');
Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity) Values (1, 1, '2026-05-02', 1);
Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, '2026-05-02');
