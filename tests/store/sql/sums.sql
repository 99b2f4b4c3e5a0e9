-- Gifts to people, of whom some are gone and several share a name, spelled in two ways.
Create Table If Not Exists Gifts(Name TEXT(9) Collate Nocase, Size SMALLINT, Half DOUBLE, Given DATE, Den SMALLINT, SID SMALLINT);
Create Table If Not Exists Joined(Name TEXT(9) Collate Nocase, Size SMALLINT, Half DOUBLE, Given DATE, Den SMALLINT, SID SMALLINT);
Create Table If Not Exists Sums(Name TEXT(9) Collate Nocase, Size SMALLINT);
Create Table If Not Exists Codes(Code DOUBLE PRIMARY KEY, Called TEXT(9));
Create Table If Not Exists Pairs(A SMALLINT, B SMALLINT, Called TEXT(9), PRIMARY KEY(A, B));
Create View If Not Exists Paired As Select 0;
Create View If Not Exists Whole As Select 0;
Create View If Not Exists Single As Select 0;
Create View If Not Exists Both As Select 0;
Create View If Not Exists Once As Select 0;
Create View If Not Exists Merged As Select 0;
Create View If Not Exists Wide As Select 0;
Create View If Not Exists Third As Select 0;
Create View If Not Exists Nested As Select 0;
Create View If Not Exists Twice As Select 0;
Create View If Not Exists Across As Select 0;
Create View If Not Exists Sorted As Select 0;
Create View If Not Exists Coded As Select 0;
Create View If Not Exists Unkeyed As Select 0;
Create View If Not Exists Viewed As Select 0;
Create View If Not Exists Loose As Select 0;
Create View If Not Exists Turned As Select 0;
Create View If Not Exists Inside As Select 0;
Create View If Not Exists Some As Select 0;
Create View If Not Exists Chained As Select 0;
Create View If Not Exists Shifted As Select 0;
Create View If Not Exists Always As Select 0;
Create View If Not Exists Leading As Select 0;
Create View If Not Exists Backward As Select 0;
Create View If Not Exists Doubled As Select 0;
Create View If Not Exists Mixed As Select 0;
Create View If Not Exists Summed As Select 0;
Insert Or Ignore Into Stored_Queries Values
('Whole', 'Select P.[Last Name] As Name, IIf(IsNull(G.Size), 1, Size) As Size, Half, Given, P.Den, G.SID From Gifts G Left Join People P On G.SID = P.SID'),
('Single', 'Select [Last Name] As Called, 1 As One, 0.5, Given, P.Den, Gifts.SID From Gifts Left Join People As P On P.SID = Gifts.SID Order By Given'),
('Once', 'Select Distinct P.[Last Name] As Name, Size From Gifts G Left Join People P On G.SID = P.SID'),
('Wide', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.SID, People Q'),
('Third', 'Select P.[Last Name] As Name, G.Size As Size From (Gifts G Left Join People P On G.SID = P.SID) Left Join People Q On G.SID = Q.SID'),
('Nested', 'Select Q.[Last Name] As Name, G.Size As Size From Gifts G Left Join (Select * From People) As Q On G.SID = Q.SID'),
('Some', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.SID Where G.Size > 1'),
('Inside', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Inner Join People P On G.SID = P.SID'),
('Turned', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Right Join People P On G.SID = P.SID'),
('Loose', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.Half = P.SID'),
('Viewed', 'Select P.[Last Name] As Name, G.Size As Size From Whole G Left Join People P On G.SID = P.SID'),
('Unkeyed', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.Den'),
('Coded', 'Select K.Called As Name, G.Size As Size From Gifts G Left Join Codes K On G.SID = K.Code'),
('Sorted', 'Select Name, Sum(Size) As Sizes From Both Group By Name Order By Name Desc'),
('Across', 'Select P.[Last Name] & G.Size As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.SID'),
('Twice', 'Select Q.[Last Name] As Name, G.Size As Size From Gifts G Left Join (Select * From People Union All Select * From People) As Q On G.SID = Q.SID'),
('Chained', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.SID = P.Den'),
('Shifted', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.SID + 1'),
('Always', 'Select P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On P.SID = P.SID'),
('Leading', 'Select P.[Last Name] As Name, P.Den As Size From People P Left Join Gifts G On P.Den = P.SID'),
('Backward', 'Select G.Size & P.[Last Name] As Name, G.Size As Size From Gifts G Left Join People P On G.SID = P.SID'),
('Doubled', 'Select *, * From Both'),
('Mixed', 'Select [Last Name] As Name, 1 As Size, 0.5 As Half, Born As Given, Den, SID From People Union All Select * From Single'),
('Summed', 'Select Name, Sum(Size) As Sizes From Both Group By Name'),
('Paired', 'Select K.Called As Name, G.Size As Size From Gifts G Left Join Pairs K On G.SID = K.A'),
('Merged', 'Select * From Whole Union Select * From Single'),
('Both', 'Select * From Whole Union All Select * From Single');
Delete From People; Delete From Gifts; Delete From Joined; Delete From Sums;
With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 9)
Insert Into People(SID, "Last Name", Den)
Select i, Case i * 7 % 5 When 0 Then 'a' When 1 Then 'B' When 2 Then 'A' When 3 Then 'b' End, i % 3 From n;
With Recursive n(i, r) As (Values(1, 1) Union All Select i + 1, (r * 48271) % 2147483647 From n Where i < 400)
Insert Into Gifts(SID, Given, Size, Half)
Select 1 + r % 12, Date('2024-01-01', (r / 16 % 365) || ' days'), Nullif(r / 8 % 4, 0), 0.1 From n;
