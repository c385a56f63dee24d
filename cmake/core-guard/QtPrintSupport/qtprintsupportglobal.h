#error "The headless core must not use QtPrintSupport; move this code to the user-interface library."
