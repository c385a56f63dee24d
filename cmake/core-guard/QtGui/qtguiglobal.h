#error "The headless core must not use QtGui; move this code to the user-interface library."
