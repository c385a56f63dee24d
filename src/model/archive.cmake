# Bookmark archive and web layouts.
list(APPEND VANTRELL_CORE_SOURCES
)
