# Tests of the user-interface text table.
