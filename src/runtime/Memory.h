#pragma once

/// Sets up the C library's allocator for what these programs do most: rows of long screens, which
/// are many small blocks that are made together and let go together. First thing in a process.
void setUpMemory();
