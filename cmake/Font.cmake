# Bricolage Grotesque comes from its npm package, unpacked by scripts/setup.sh into .cache/font-static.
# Nothing depends on it: where it is absent the system's sans face serves.
set(VORLE_FONT_DIR ${CMAKE_SOURCE_DIR}/.cache/font-static)
