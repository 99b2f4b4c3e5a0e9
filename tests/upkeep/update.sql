Insert Into Adults (Adult_SID, First_Name, Assigned_Den_SID) Values (1, 'Åsa', Null), (2, 'Bo', 7), (3, 'Cy', 0);
Insert Into Scouts (Scout_SID, Last_Name, Note) Values (5, 'O''Brien', 'long'), (4, '', Null);
Insert Into Assigned_Awards_Scouts Values (5, 2, '2001-03-04', 2001, 3), (4, 1, '1999-12-31', 1999, 12),
    (5, 1, Null, Null, Null);
Insert Into Purchase_List (Award_Name) Values ('Bobcat');
