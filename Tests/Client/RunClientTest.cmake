# Runs the client test: installs the pinned packages when they are missing or older than the
# lock file, then runs node's test runner. Called by CTest with NODE, NPM and CLIENT_DIR set.
if(NOT NODE OR NOT NPM)
	message(FATAL_ERROR "The client test needs Node.js 20 and npm on the PATH (apt-get install nodejs npm), then re-run cmake.")
endif()

set(InstalledLock "${CLIENT_DIR}/node_modules/.package-lock.json")
if(NOT EXISTS "${InstalledLock}" OR "${CLIENT_DIR}/package-lock.json" IS_NEWER_THAN "${InstalledLock}")
	execute_process(COMMAND "${NPM}" ci --no-audit --no-fund
		WORKING_DIRECTORY "${CLIENT_DIR}"
		RESULT_VARIABLE NpmResult)
	if(NOT NpmResult EQUAL 0)
		message(FATAL_ERROR "npm ci failed in ${CLIENT_DIR} (${NpmResult})")
	endif()
endif()

execute_process(COMMAND "${NODE}" --test --test-reporter=spec mcp-client.test.mjs
	WORKING_DIRECTORY "${CLIENT_DIR}"
	RESULT_VARIABLE NodeResult)
if(NOT NodeResult EQUAL 0)
	message(FATAL_ERROR "node --test failed (${NodeResult})")
endif()
