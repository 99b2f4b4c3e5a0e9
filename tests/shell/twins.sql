-- People, dens, awards and titles that look alike: in the name, in all but the initial, but for capitals, blanks or a
-- letter more; and the ends of months.
Insert Into Dens (Den_SID, Den_Number, Den_Name, Den_Type, Year_Started, Active) Values
    (1, 3, 'Owls', 'Wolf', 2025, 'Y'), (2, 10, ' Hawks ', 'Wolf', 0, 'Y'), (3, 3, Null, 'Wolf', Null, 'Y'),
    (4, Null, '', 'Bear', 1999, 'N'), (5, 31, 'Owl', 'Tiger', 2026, 'Y'), (6, 4, 'X', Null, 2024, 'Y');
Insert Into Scouts (Scout_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID, Birth_Date) Values
    (1, 'Ada', 'C', 'Zorn', 'Y', 1, '2016-02-29'), (2, 'Ada', Null, 'Zorn', 'Y', 3, '2015-12-31'),
    (3, 'Ada', 'B', 'Zorn', 'Y', 1, '2016-01-31'), (4, 'ada', 'A', 'zorn', 'Y', Null, Null),
    (5, 'Adam', ' ', 'Zorn', 'Y', 5, '1001-01-01'), (6, ' Bo ', 'Q', ' Young ', 'Y', Null, '2017-07-07'),
    (7, 'Bo', 'Q', 'Young', 'N', 1, '2017-07-08'), (8, 'Bo', '', 'Young', 'Y', 6, '2017-07-09'),
    (9, '', '', '', 'Y', Null, '2016-10-31'), (10, Null, Null, 'Zo', 'Y', 9, '2016-11-30'),
    (11, 'Cy', 'Z', 'Xu', 'Y', Null, '2016-03-01');
Update Scouts Set Address = 'A 1', City = 'C 1', State = 'S1', Zip_Code = '10001', Phone = '1-1', Parent_Name1 = 'P 1',
    Parent_Name2 = 'Q 1', Note = 'N' || char(13, 10) || '1', Pack_Start_Date = '2024-02-29', Tigar = 'Y',
    Years_In_Other_Pack = 1, Years_In_Scouts = 2, School = 'L 1', BSA_Number = 'B1', Scouts_Email = 'e@1',
    Alt_Parent_Address = 'AA', Alt_Parent_City = 'AC', Alt_Parent_State = 'AS', Alt_Parent_Zip = 'AZ',
    Parent1_Email = 'p@1', Parent1_Home_Phone = 'h1', Parent1_Work_Phone = 'w1', Parent2_Email = 'q@1',
    Parent2_Home_Phone = 'h2', Parent2_Work_Phone = 'w2', Grade_In_School = 12, Boys_Life = 1,
    Parent1_Correspondance = 1, Parent2_Correspondance = 0, Parent1_Use_Scout_Add = 0, Parent1_Den_Leader_SID = 3,
    Parent2_Den_Leader_SID = 4 Where Scout_SID = 3;
Update Scouts Set Parent2_Den_Leader_SID = 31, Parent2_Correspondance = 1, Parent2_Use_Scout_Add = 0, Grade_In_School = 0,
    Note = ' ', Pack_Start_Date = '2025-12-31' Where Scout_SID = 1;
Insert Into Adults (Adult_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID, Birth_Date) Values
    (1, 'Ann', 'M', 'Young', 'Y', Null, '1980-02-29'), (2, 'Ann', Null, 'Young', 'Y', 1, '1980-12-31'),
    (3, 'Ann', 'A', 'Young', 'Y', 5, '1001-01-01'), (4, 'ann', 'L', 'young', 'Y', Null, Null),
    (5, 'Anna', '', 'Young', 'Y', 1, '1980-01-31'), (6, ' Bob ', 'X', ' Old ', 'Y', 0, '1981-03-31'),
    (7, 'Bob', 'X', 'Old', 'N', 1, '1981-04-30'), (8, 'Cid', ' ', 'Older', 'Y', Null, '1981-05-31'),
    (9, '', '', '', 'Y', Null, '1981-05-30'), (10, 'Dan', '', 'Old', Null, Null, '1981-05-29');
Update Adults Set Address = 'A 1', City = 'C 1', State = 'S1', Zip_Code = '10001', Phone = '1-1', WorkPhone = 'w1',
    Email = 'e@1', Note = 'N' || char(13, 10) || '1', Pack_Start_Date = '2024-02-29', Years_In_Other_Pack = 1.5,
    Years_In_Scouts = 12 Where Adult_SID = 3;
Delete From Den_Titles; Insert Into Den_Titles Values ('Den Leader', 5), ('helper', 7), ('Helpers', 7), ('Low', Null);
Delete From Pack_Positions; Insert Into Pack_Positions Values ('Chair', 12), ('Clerk', 7), ('clerks', 7);
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values (1, 1, 'Helper', 7),
    (1, 2, 'Helper', 7), (1, 9, 'Gone', 1), (2, 1, Null, Null), (3, 1, 'Den Leader', 5), (3, 5, 'Low', 100),
    (4, 3, 'Helper', 7), (5, 1, 'helper', 7), (6, 1, ' Blank ', 7), (7, 1, 'Helper', 7), (8, 4, 'Old', 3);
Insert Into Leader_Pack_Assn (Leader_Pack_Assn, Leader_SID, Position_Title, Sort_Order) Values (11, 1, 'Chair', 12),
    (12, 1, 'Chair', 12), (13, 1, 'Clerk', 7), (21, 2, 'Chair', 12), (31, 3, '', Null);
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type, Description) Values (1, 'Knot', 'Badge', 'First'),
    (2, 'Knot ', 'Badge', 'Second'), (3, 'knot', 'Pin', Null), (4, 'Knot', 'Pin', 'ab'),
    (5, 'Knots', 'Belt Loop', ''), (6, 'Star', 'Pin', ' '), (7, 'Star', 'Pin', 'Twin'), (8, ' Star', 'Patch', 'x'),
    (9, Null, 'Medal', 'No name'), (10, 'Zed', Null, 'No type'), (11, 'Zed', 'Other', 'Unlisted'),
    (12, 'Zed', 'Badge', 'Late');
Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Year, Month, Assigned_SID, Quantity) Values
    (3, 1, '2026-01-31', 2026, 1, 10, Null), (3, 4, '2026-01-31', 2026, 1, 11, 2), (3, 6, '2024-02-29', 2024, 2, 12, 100),
    (3, 99, '2026-05-05', 2026, 5, 13, 1), (3, 7, '2025-12-31', 2025, 12, 14, 0), (1, 6, '2024-02-29', 2024, 2, 15, 3),
    (2, 10, '2026-10-31', 2026, 10, 16, 12), (2, 2, '2026-03-01', 2026, 3, 17, 1), (7, 8, '2026-03-01', 2026, 3, 18, 1);
Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned, Year, Month) Values
    (3, 1, '2026-01-31', 2026, 1), (3, 4, '2026-01-31', 2026, 1), (3, 6, '2024-02-29', 2024, 2),
    (3, 6, '2024-02-29', 2024, 2), (3, 6, '2024-02-28', 2024, 2), (1, 6, '2024-02-29', 2024, 2),
    (2, 9, '2026-12-31', 2026, 12);
Insert Into Purchase_List Values ('Left over', 'Pin', 31);
