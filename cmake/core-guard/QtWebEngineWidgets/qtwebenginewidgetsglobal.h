#error "The headless core must not use QtWebEngineWidgets; move this code to the user-interface library."
