#error "The headless core must not use QtWebEngineCore; move this code to the user-interface library."
