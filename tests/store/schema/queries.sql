Insert Into Insignias Values (1, 'Wolf', 'Rank', ' ');
Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity) Values
    (1, 1, '2026-01-01', Null), (2, 1, '2026-01-31', 3), (1, 50, '2026-01-15', 2);
Insert Into Assigned_Awards_Adults Values (1, 1, '2026-01-15', 2026, 1), (1, 77, '2026-01-15', 2026, 1);
Insert Into Dens (Den_SID, Den_Number, Den_Type) Values (3, 7, 'Bear');
Insert Into Adults (Adult_SID, Last_Name) Values (1, 'O''Brien');
Insert Into Leader_Den_Assignments Values (1, 3, Null, Null), (2, 44, 'Den Leader', 1);
Insert Into Leader_Pack_Assn Values ('Cub Master', 1, 1, 9)
