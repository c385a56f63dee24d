# History entries and the sorted unique string collection.
list(APPEND VANTRELL_CORE_SOURCES
)
