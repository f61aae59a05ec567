#include "DatabaseFile.h"

void CloseDatabase::operator()(ZT_SQLiteDatabase* database) const
{
    database->Close();
    ReleaseDatabase(database);
}

DatabaseHandle CreateAndReopen(const std::string& path, int generation, const std::string& sql)
{
    DatabaseHandle created(CreateDatabase(path.c_str(), generation));
    if (!created || !created->ExecuteFormat(sql.c_str()))
        return nullptr;
    created.reset();
    return DatabaseHandle(OpenDatabase(path.c_str()));
}
