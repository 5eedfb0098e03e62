// The translation unit that CMake hangs the shared precompiled headers on.
