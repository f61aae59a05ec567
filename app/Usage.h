#pragma once

#include <cstdio>

void PrintBanner(FILE* stream, bool withEmptyLine);
void PrintUsage();
