# Tests of the bookmark archive and web layouts.
