#include "audiofile/tags/LTagGenres.h"

// The order is the one of the ID3v1 standard (0 to 79) and its extensions in use (80 to 147). German where a German
// word is usual.
const char* const Genres[kGenreCount] = {
    "Blues", "Klassischer Rock", "Country", "Dance", "Disco", "Funk", "Grunge", "Hip-Hop", "Jazz", "Metal",
    // 10
    "New Age", "Oldies", "Andere", "Pop", "R&B", "Rap", "Reggae", "Rock", "Techno", "Industrial",
    // 20
    "Alternative", "Ska", "Death Metal", "Streiche", "Filmmusik", "Euro-Techno", "Ambient", "Trip-Hop", "Gesang",
    "Jazz & Funk",
    // 30
    "Fusion", "Trance", "Klassik", "Instrumental", "Acid", "House", "Spielemusik", "Klangausschnitt", "Gospel",
    "Geräusche",
    // 40
    "Alternative Rock", "Bass", "Soul", "Punk", "Space", "Meditation", "Instrumental-Pop", "Instrumental-Rock", "Ethno",
    "Gothic",
    // 50
    "Darkwave", "Techno-Industrial", "Elektronisch", "Pop-Folk", "Eurodance", "Dream", "Südstaaten-Rock", "Comedy",
    "Kult", "Gangsta",
    // 60
    "Top 40", "Christlicher Rap", "Pop/Funk", "Jungle", "Musik der Indianer", "Kabarett", "New Wave", "Psychedelisch",
    "Rave", "Showmelodien",
    // 70
    "Trailer", "Lo-Fi", "Tribal", "Acid Punk", "Acid Jazz", "Polka", "Retro", "Musical", "Rock & Roll", "Hard Rock",
    // 80
    "Folk", "Folk-Rock", "Volksmusik", "Swing", "Fast Fusion", "Bebop", "Latin", "Revival", "Keltisch", "Bluegrass",
    // 90
    "Avantgarde", "Gothic Rock", "Progressive Rock", "Psychedelic Rock", "Symphonic Rock", "Slow Rock", "Big Band",
    "Chor", "Easy Listening", "Akustisch",
    // 100
    "Humor", "Hörspiel", "Chanson", "Oper", "Kammermusik", "Sonate", "Sinfonie", "Booty Bass", "Primus", "Porn Groove",
    // 110
    "Satire", "Slow Jam", "Club", "Tango", "Samba", "Folklore", "Ballade", "Power-Ballade", "Rhythmic Soul",
    "Freestyle",
    // 120
    "Duett", "Punk Rock", "Schlagzeugsolo", "A cappella", "Euro-House", "Dancehall", "Goa", "Drum & Bass", "Club-House",
    "Hardcore",
    // 130
    "Terror", "Indie", "Britpop", "Afro-Punk", "Polnischer Punk", "Beat", "Christlicher Gangsta-Rap", "Heavy Metal",
    "Black Metal", "Crossover",
    // 140
    "Moderne christliche Musik", "Christlicher Rock", "Merengue", "Salsa", "Thrash Metal", "Anime", "J-Pop",
    "Synthpop"};
