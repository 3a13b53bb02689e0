# Bricolage Grotesque comes from its npm package, put into .cache/font-static by scripts/setup.sh: as a
# TTF file, or as the package's WOFF file where there is no Python to unpack it.
# Nothing depends on it: where it is absent the system's sans face serves.
set(VORLE_FONT_DIR ${CMAKE_SOURCE_DIR}/.cache/font-static)
