Select Last_Name From Scouts Union Select School From Scouts Union Select Address From Scouts
Union Select Phone From Adults Union Select Parent1_Email From Scouts Union Select Note From Scouts
Union Select BSA_Number From Scouts Union Select Name From PackInfo Union Select Name From Mine
Union Select Den_Name From Dens
