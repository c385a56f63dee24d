# Feed parsing and the generated feed page (headless).
list(APPEND VANTRELL_CORE_SOURCES
)
