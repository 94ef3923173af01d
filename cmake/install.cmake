# What is shipped: cmake --install BUILD --component program --prefix FOLDER
#
# Lays out FOLDER/NHUpdateManager as it lies on a user's disk. With --strip the executable and the
# library are without their symbols.
set(data ${PROJECT_SOURCE_DIR}/data)
install(TARGETS NHUpdateManager NSWLogDynamic64U
  RUNTIME DESTINATION NHUpdateManager COMPONENT program)
install(FILES ${data}/LogConfig.ini ${data}/NOTICES.txt DESTINATION NHUpdateManager COMPONENT program)
install(DIRECTORY ${data}/Config DESTINATION NHUpdateManager COMPONENT program
  FILES_MATCHING PATTERN "NHUpdateManager.*.json" PATTERN "SteamLanguageMapping.ini")
