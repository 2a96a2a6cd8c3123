#pragma once

/// What a program does before anything else, as the libraries that it stands on need it.
void setUpProgram();
