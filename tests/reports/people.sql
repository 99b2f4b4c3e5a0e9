INSERT INTO Dens (Den_SID, Den_Number, Den_Type, Active) VALUES (3, 8, 'Wolf', 'Y'), (5, 2, 'Bear', 'Y'),
  (6, 1, 'Tiger', 'N'), (7, 4, NULL, 'Y');
INSERT INTO Scouts (Scout_SID, First_Name, Last_Name, MI, Active) VALUES (12, 'Jo ', 'Wu', 'Q', 'Y'),
  (7, 'Al', 'Lee', NULL, 'Y'), (9, 'Al', 'Lee', 'Z', 'Y'), (8, 'al', 'Lee', 'A', 'Y'), (1, 'Old', 'Gone', NULL, 'N');
INSERT INTO Adults (Adult_SID, First_Name, Last_Name, MI, Active) VALUES (12, 'Carl', 'Helper', 'X', 'N'),
  (4, 'Ann', 'Ito', 'B', 'Y'), (5, 'Ann', 'Ito', 'C', 'Y'), (6, 'Ann', 'Ito', 'A', 'Y');
