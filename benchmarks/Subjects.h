#pragma once

namespace orlo::bench
{

class Table;

// Each subject makes its data in a folder of its own, which is deleted when it returns.

void walkRecords(Table& table);
void prepareStatements(Table& table);
void assignAwards(Table& table);
void createPurchaseList(Table& table);
void printReport(Table& table);
void fillPackGrid(Table& table);
void walkRecordForm(Table& table);
void openScouts(Table& table);
void openAdults(Table& table);
void startProgram(Table& table);
void keepCopies(Table& table);
void copyFiles(Table& table);
void updateOldFile(Table& table);
void openFormerFile(Table& table);

} // namespace orlo::bench
