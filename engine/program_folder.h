// Where the running program lies.
#pragma once

#include <string>

/// The absolute path of the folder that holds the program's file, without a separator at its
/// end; links are followed, so that the data files beside the program are found. Empty when
/// the system does not tell.
std::string ProgramFolder();
