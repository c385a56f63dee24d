# Tests of history entries and the sorted unique string collection.
