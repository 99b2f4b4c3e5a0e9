-- Many people of odd names, awards with notes of many lines, one of them no longer in the catalogue.
BEGIN;
INSERT INTO PackInfo VALUES (12, 'Zoë''s');
INSERT INTO Scouts (Scout_SID, First_Name, Last_Name, MI, Active, Assigned_Den_SID, Phone, Parent_Name1, Parent1_Email,
    Parent1_Home_Phone, Parent1_Work_Phone, Parent_Name2, Parent2_Home_Phone, Parent2_Work_Phone, Scouts_Email,
    Parent2_Email)
  WITH N(i) AS (VALUES(100) UNION ALL SELECT i + 1 FROM N WHERE i < 299)
  SELECT i, 'José María ' || i, CASE i % 4 WHEN 0 THEN 'Ångström' WHEN 1 THEN 'O''Neil' WHEN 2 THEN printf('%.40c', 'W')
    ELSE 'Featherstonehaugh-Cholmondeley de la Cr.' END, iif(i % 3, 'Q', ''), iif(i % 10, 'Y', 'N'),
    CASE i % 5 WHEN 0 THEN NULL WHEN 1 THEN 99 WHEN 2 THEN 6 WHEN 3 THEN 5 ELSE 3 END, '(740) 555-0' || i,
    'Zoë "Zo" de los Ríos y Montañas ' || i, iif(i % 6, 'zoe' || i || '@a.very.long.name.of.a.host.example.org', NULL),
    iif(i % 2, '(740) 555-0' || i, '740-1'), '614-' || i, iif(i % 3, 'Bo', ''), iif(i % 3, '', NULL), iif(i % 4, '', '12'),
    iif(i % 7, '', 'kid@example.org'), 'bo@example.org' FROM N;
INSERT INTO Adults (Adult_SID, First_Name, Last_Name, Active, Phone, WorkPhone, Email)
  WITH N(i) AS (VALUES(100) UNION ALL SELECT i + 1 FROM N WHERE i < 160)
  SELECT i, 'Ann ' || i, CASE i % 2 WHEN 0 THEN printf('%.40c', 'M') ELSE 'D''Arcy' END, iif(i % 8, 'Y', 'N'), '1' || i,
    NULL, 'adult' || i || '@example.org' FROM N;
INSERT INTO Leader_Den_Assignments SELECT Adult_SID, Adult_SID % 2 * 2 + 3, 'Den Leader', Adult_SID % 5 FROM Adults
  WHERE Adult_SID % 3;
INSERT INTO Leader_Den_Assignments SELECT Adult_SID, 6, NULL, NULL FROM Adults WHERE Adult_SID % 4 = 1;
INSERT INTO Leader_Pack_Assn (Position_Title, Leader_SID, Sort_Order)
  SELECT 'Position ' || Adult_SID % 9, Adult_SID, Adult_SID % 9 FROM Adults WHERE Adult_SID % 5 = 0;
INSERT INTO Insignias (Insignia_SID, Insignia_Name, Insignia_Type, Description)
  WITH N(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM N WHERE i < 90)
  SELECT i, 'Award ' || i || printf('%.*c', i % 30, 'w'), CASE i % 4 WHEN 0 THEN 'Pin' WHEN 1 THEN '' ELSE 'Belt Loop' END,
    iif(i % 6, 'Given to ' || i, 'First line' || char(10, 10) || 'Third: "a longer one"' || printf('%.200c', 'x')) FROM N;
INSERT INTO Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity)
  WITH N(i) AS (VALUES(0) UNION ALL SELECT i + 1 FROM N WHERE i < 400)
  SELECT 100 + i % 150, 1 + i % 91, date('2024-01-30', i || ' days'), iif(i % 3, i % 3, NULL) FROM N;
INSERT INTO Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned)
  WITH N(i) AS (VALUES(0) UNION ALL SELECT i + 1 FROM N WHERE i < 99)
  SELECT 100 + i % 50, 1 + i % 91, date('2024-01-30', i || ' days') FROM N;
INSERT INTO Other_Purchase_List VALUES ('Candles, "large"', 12), ('Crêpe', 1), ('Wolf''s glue', NULL);
COMMIT;
