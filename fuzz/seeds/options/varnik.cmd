*/win
/nointro
 * /name: "a player"
*/port:None
:
