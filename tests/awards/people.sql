Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values
    (1, 3, 'Wolf', 'Y'), (2, 1, 'Bear', 'Y'), (3, 2, 'Tiger', 'N'), (4, Null, 'Webelos', 'Y'), (5, 5, 'Empty', 'Y');
Insert Into Scouts (Scout_SID, First_Name, Last_Name, MI, Assigned_Den_SID, Active) Values
    (1, 'Ann', 'Young', Null, 1, 'Y'), (2, 'Bob', 'Adams', 'C', 1, 'Y'), (3, 'Bob', 'Adams', 'A', 2, 'Y'),
    (4, 'Abe', 'Adams', 'Z', Null, 'Y'), (5, 'Zed', 'Aaron', Null, 1, 'N'), (6, 'Kim', 'Lee', Null, 4, 'Y');
Insert Into Adults (Adult_SID, First_Name, Last_Name, Assigned_Den_SID, Active) Values
    (1, 'Dora', 'King', 1, 'Y'), (2, 'Ed', 'Hall', 2, 'Y'), (3, 'Flo', 'Gray', 0, 'Y'), (5, 'Gus', 'Aaron', 1, 'N');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title) Values (3, 1, 'Den Leader');
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values
    (1, 'Wolf', 'Badge'), (2, 'Bear', 'Pin'), (3, 'Bear', 'Badge');
