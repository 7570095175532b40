# Runs on the packages' files before they are packed: the folders that CMake
# makes on the way to a file have what the umask of the one who builds leaves.
file(CHMOD_RECURSE ${CPACK_TEMPORARY_DIRECTORY}
  DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
