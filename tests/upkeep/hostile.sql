With Recursive n(i) As (Values(1) Union All Select i + 1 From n Limit 400)
Insert Into Scouts (Scout_SID, First_Name, Last_Name, MI, Active, Assigned_Den_SID)
    Select i, 'Å' || i, 'B', '', 'Y', 1 From n;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Limit 400)
Insert Into Adults (Adult_SID, First_Name, Last_Name, MI, Active) Select i, 'B', 'C', '', 'Y' From n;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Limit 400)
Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned)
    Select i, 1, '2025-01-02' From n;
Insert Into Dens Values (1, 1, 'Eagles', 'Wolf', 2025, 'Y');
Insert Into Insignias Values (1, 'Bobcat', 'Pin', '');
Insert Into Leader_Den_Assignments Values (1, 1, 'Den Leader', 1);
Insert Into Purchase_List Values ('Bobcat', 'Pin', 1);
