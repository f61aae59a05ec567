#include "Sqlite2Checker.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: sqlite2-check FILE\n");
        return 2;
    }
    std::vector<std::string> problems = CheckSqlite2File(argv[1]);
    for (const std::string& problem : problems)
        printf("%s\n", problem.c_str());
    if (problems.empty())
        printf("ok\n");
    return problems.empty() ? 0 : 1;
}
