Insert Into Dens Values (1, 1, 'Cubs', 'Tiger', 2025, 'Y'), (2, 3, 'Owls', 'Wolf', 2025, 'Y'),
    (3, 2, 'Pups', 'Bear', 2025, 'N');
Insert Into Scouts (Scout_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID, Birth_Date, Tigar, Boys_Life,
    Parent1_Correspondance, Parent2_Use_Scout_Add, Parent2_Correspondance) Values
    (1, 'Ada', 'B', 'Zorn', 'Y', 2, '2016-06-07 13:30:00', 'Y', 1, 1, 0, 1),
    (2, 'Bo', Null, 'Young', 'Y', 3, '1001-01-01', 'N', 0, 0, 1, 0), (3, 'Cy', '', 'Xu', 'Y', Null, Null, Null, 0, 0, 1, 0),
    (4, 'Di', Null, 'Wood', 'N', 2, Null, 'N', 0, 0, 1, 0);
Insert Into Adults (Adult_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID) Values
    (1, 'Ann', 'M', 'Young', 'Y', Null), (2, 'Bob', Null, 'Old', 'Y', 2), (3, 'Cid', ' ', 'Idle', 'N', 2),
    (4, 'Dot', 'X', 'Fay  ', 'Y', Null);
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values
    (1, 1, 'Den Leader', 5), (1, 2, 'Helper', 5), (1, 9, 'Gone', 5), (2, 2, Null, Null), (3, 2, 'Helper', 5);
Insert Into Leader_Pack_Assn (Leader_Pack_Assn, Leader_SID, Position_Title, Sort_Order) Values
    (7, 1, 'Chair', 5), (8, 4, 'Cook', 5);
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (1, 'Knot ', 'Badge'), (2, 'Star', 'Pin');
