// The translation unit to which CMake attaches the shared precompiled headers.
