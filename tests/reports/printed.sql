-- What the reports' lines are made of: dens, people with the texts of their lines, the awards they hold.
CREATE TEMP VIEW D AS SELECT Den_SID AS D, CAST(Den_Number AS INTEGER) AS N, Den_Name AS Den_Name,
  Den_Type || 'Den' || CAST(Den_Number AS INTEGER) AS Den FROM Dens;
CREATE TEMP VIEW S AS SELECT *, Scout_SID AS SID, lower(replace(Last_Name, 'Å', 'A')) AS L, lower(First_Name || ifnull(char(1) || MI, '')) AS F,
  Last_Name || ',' || First_Name || iif(ifnull(MI, '') = '', '', MI || '.') AS Name,
  ifnull(Phone, '') || ifnull(Scouts_Email, '') || ifnull(Parent_Name1, '') || ifnull(Parent1_Home_Phone, '')
  || ifnull(Parent1_Work_Phone, '') || ifnull(Parent1_Email, '') || ifnull(Parent_Name2, '')
  || ifnull(Parent2_Home_Phone, '') || ifnull(Parent2_Work_Phone, '') || ifnull(Parent2_Email, '') AS Line
  FROM Scouts LEFT JOIN D ON D = Assigned_Den_SID WHERE Active = 'Y';
CREATE TEMP VIEW A AS SELECT *, Adult_SID AS SID, lower(Last_Name) AS L, lower(First_Name || ifnull(char(1) || MI, '')) AS F,
  Last_Name || ',' || First_Name || iif(ifnull(MI, '') = '', '', MI || '.') AS Name,
  ifnull(Phone, '') || ifnull(WorkPhone, '') || ifnull(Email, '') AS Line FROM Adults WHERE Active = 'Y';
CREATE TEMP VIEW P AS SELECT Adult_SID AS SID, ifnull(Den_Title, 'Leader') AS Title, Sort_Order AS Rank, D.* FROM Leader_Den_Assignments AS B
  JOIN D ON D = B.Den_SID;
CREATE TEMP VIEW G AS SELECT 'Scouts' AS People, SID, Name, L, F, Den, Date_Assigned AS Day, Insignia_SID, ifnull(Quantity, 1)
  AS Qty FROM Assigned_Awards_Scouts JOIN S USING (Scout_SID) UNION ALL SELECT 'Adults', SID, Name, L, F,
  (SELECT group_concat(Den) FROM (SELECT Den FROM P WHERE P.SID = A.SID ORDER BY N)), Date_Assigned, Insignia_SID, 1
  FROM Assigned_Awards_Adults JOIN A USING (Adult_SID);

-- The lines of each run, a heading that belongs to a line in front of it; %1 is what the run says of its choice.

-- dlgReportSelect1 1; dlgReportSelect1 2;
SELECT iif(row_number() OVER w = 1, Name || ifnull(Den || ',', '') || sum(Qty) OVER g
    || iif(sum(Qty) OVER g = 1, 'award', 'awards'), '')
  || (strftime('%m', Day) + 0) || '/' || (strftime('%d', Day) + 0) || '/' || strftime('%Y', Day)
  || ifnull(Insignia_Name, '(award no longer in the catalogue)') || ifnull(Insignia_Type, '') || Qty
  FROM G LEFT JOIN Insignias USING (Insignia_SID) WHERE People = '%1'
  WINDOW w AS (PARTITION BY SID ORDER BY Day), g AS (PARTITION BY SID) ORDER BY L, F, Day;
SELECT count(DISTINCT SID) || 'people' || sum(Qty) || 'awards in all' FROM G WHERE People = '%1';
-- dlgAwardsList 1; dlgAwardsList 2;
SELECT iif(row_number() OVER (PARTITION BY T ORDER BY lower(Insignia_Name)) = 1,
    T || count(*) OVER (PARTITION BY T) || 'awards', '') || Insignia_Name || %1
  FROM (SELECT *, iif(Insignia_Type = '', '(no type)', Insignia_Type) AS T FROM Insignias)
  ORDER BY T, lower(Insignia_Name);
SELECT count(*) || 'awards in all' FROM Insignias;
-- dlgScoutList 1;
SELECT Name || Line FROM S ORDER BY L, F; SELECT count(*) || 'scouts in all' FROM S;
-- dlgScoutList 2;
SELECT iif(row_number() OVER (PARTITION BY D ORDER BY L, F) = 1,
    ifnull(Den, 'No den') || count(*) OVER (PARTITION BY D) || 'scouts', '') || Name || Line
  FROM S ORDER BY D IS NULL, N, L, F;
SELECT count(*) || 'scouts in all' FROM S;
-- dlgAdultList 1;
SELECT Name || Line || ifnull((SELECT group_concat(Title, '') FROM (
    SELECT Position_Title AS Title, 0 AS N FROM Leader_Pack_Assn WHERE Leader_SID = A.SID UNION ALL
    SELECT Title || ',' || Den, N FROM P WHERE P.SID = A.SID ORDER BY 2, 1)), '')
  FROM A ORDER BY L, F;
SELECT count(*) || 'adults in all' FROM A;
-- dlgAdultList 2;
SELECT iif(row_number() OVER (PARTITION BY D ORDER BY Rank IS NULL, Rank, L, F) = 1,
    ifnull(Den, 'No den') || count(*) OVER (PARTITION BY D) || 'adults', '') || Name || ifnull(Title, '') || Line
  FROM A LEFT JOIN P USING (SID) ORDER BY D IS NULL, N, Rank IS NULL, Rank, L, F;
SELECT count(*) || 'adults in all' FROM A; SELECT 'Positions of the Pack';
SELECT Position_Title || Name || Line FROM Leader_Pack_Assn JOIN A ON SID = Leader_SID ORDER BY Sort_Order, L, F;
-- dlgCombinedRoster;
SELECT iif(row_number() OVER (PARTITION BY D ORDER BY Kind, Rank IS NULL, Rank, L, F) = 1,
    ifnull(Den || iif(ifnull(Den_Name, '') = '', '', ',' || Den_Name), 'No den')
    || iif(sum(Kind = 1) OVER d = 0, '', sum(Kind = 1) OVER d || 'leaders,') || sum(Kind = 2) OVER d || 'scouts', '')
  || iif(row_number() OVER (PARTITION BY D, Kind ORDER BY Rank IS NULL, Rank, L, F) = 1,
    iif(Kind = 1, 'LeaderTitle', 'ScoutTelephoneParent') || 'HomeWorkE-mail', '') || Text
  FROM (SELECT D, N, Den, Den_Name, 1 AS Kind, Rank, L, F, Name || ifnull(Title, '') || Line AS Text FROM A JOIN P USING (SID)
    UNION ALL SELECT D, N, Den, Den_Name, 2, 0, L, F, Name || Line FROM S)
  WINDOW d AS (PARTITION BY D) ORDER BY D IS NULL, N, Kind, Rank IS NULL, Rank, L, F;
SELECT count(*) || 'scouts in all' FROM S;
-- frmCreatePurchaseList;
SELECT 'AwardsQuantityAwardType';
SELECT sum(Q) || ifnull(Insignia_Name, '(award no longer in the catalogue)') || ifnull(Insignia_Type, '') FROM (
    SELECT Insignia_SID, ifnull(Quantity, 1) AS Q FROM Assigned_Awards_Scouts
    UNION ALL SELECT Insignia_SID, 1 FROM Assigned_Awards_Adults) LEFT JOIN Insignias USING (Insignia_SID)
  GROUP BY Insignia_SID ORDER BY Insignia_Name IS NULL, lower(Insignia_Name);
SELECT (SELECT sum(ifnull(Quantity, 1)) FROM Assigned_Awards_Scouts) + (SELECT count(*) FROM Assigned_Awards_Adults)
  || 'in all, on 91 lines' || 'Other ItemsQuantityItem';
SELECT ifnull(Quantity, '') || Item_Name FROM Other_Purchase_List ORDER BY Item_Name;
SELECT sum(Quantity) || 'in all, on' || count(*) || 'lines' FROM Other_Purchase_List;
