# Writes an empty "<Name>.generated.h" for every such include in the plug-in's sources, standing
# in for UnrealHeaderTool's output during the syntax check.
file(GLOB_RECURSE Candidates "${SOURCE_DIR}/*.h" "${SOURCE_DIR}/*.cpp")
file(MAKE_DIRECTORY "${OUTPUT_DIR}")
foreach(Candidate ${Candidates})
	file(STRINGS "${Candidate}" Includes REGEX "#include \"[A-Za-z0-9_]+\\.generated\\.h\"")
	foreach(Line ${Includes})
		string(REGEX REPLACE ".*\"([A-Za-z0-9_]+\\.generated\\.h)\".*" "\\1" Generated "${Line}")
		if(NOT EXISTS "${OUTPUT_DIR}/${Generated}")
			file(WRITE "${OUTPUT_DIR}/${Generated}" "#pragma once\n")
		endif()
	endforeach()
endforeach()
