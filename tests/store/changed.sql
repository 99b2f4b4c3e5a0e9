CREATE TABLE "Dens"(
    "Den_SID" SMALLINT NOT NULL CONSTRAINT "Den_SID kind" CHECK(typeof("Den_SID") IN ('integer','null')) CONSTRAINT "Den_SID range" CHECK("Den_SID" BETWEEN -32768 AND 32767),
    "Den_Number" DOUBLE CONSTRAINT "Den_Number kind" CHECK(typeof("Den_Number") IN ('real','null')),
    "Den_Type" TEXT(40) COLLATE NOCASE CONSTRAINT "Den_Type kind" CHECK(typeof("Den_Type") IN ('text','null')) CONSTRAINT "Den_Type size" CHECK(length("Den_Type")<=40),
    "Year_Started" DOUBLE CONSTRAINT "Year_Started kind" CHECK(typeof("Year_Started") IN ('real','null')),
    "Active" TEXT(255) COLLATE NOCASE CONSTRAINT "Active kind" CHECK(typeof("Active") IN ('text','null')) CONSTRAINT "Active size" CHECK(length("Active")<=255),
    "Colour" TEXT(3) COLLATE NOCASE CONSTRAINT "Colour kind" CHECK(typeof("Colour") IN ('text','null')) CONSTRAINT "Colour size" CHECK(length("Colour")<=3),
    "Flag" BOOLEAN DEFAULT 1 CONSTRAINT "Flag kind" CHECK("Flag" IN (0,1)),
    "Free" TEXT(255) COLLATE NOCASE CONSTRAINT "Free kind" CHECK(typeof("Free") IN ('text','null')),
    "Rank" SMALLINT DEFAULT 7 CONSTRAINT "Rank kind" CHECK(typeof("Rank") IN ('integer','null')) CONSTRAINT "Rank range" CHECK("Rank" BETWEEN -32768 AND 32767),
    CONSTRAINT "Dens_PK" PRIMARY KEY("Den_SID" COLLATE BINARY)
)

CREATE INDEX "Dens.Colour" ON "Dens"("Colour" COLLATE BINARY)
