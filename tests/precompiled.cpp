// Where the tests' precompiled headers are compiled: a target needs a source file. Nothing else belongs here.
