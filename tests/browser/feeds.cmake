# Tests of feed parsing and the feed page.
