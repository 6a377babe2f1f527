/nointro
/win
/novista
