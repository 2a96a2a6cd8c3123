# A host that has found its core library before it looks for the module.
find_package(OvHost REQUIRED PATHS ${CMAKE_CURRENT_LIST_DIR} NO_DEFAULT_PATH)
