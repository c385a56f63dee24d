#error "The headless core must not use QtWidgets; move this code to the user-interface library."
