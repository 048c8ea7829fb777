#include "tools/site/NameLists.h"

#include <array>

namespace kintar::site {

namespace {

using Names = std::string_view;

constexpr std::array plainLast{
    Names{"Abernathy"}, Names{"Adams"},     Names{"Ashdown"},   Names{"Baker"},
    Names{"Barlow"},    Names{"Bennett"},   Names{"Blackwood"}, Names{"Brook"},
    Names{"Carter"},    Names{"Chandler"},  Names{"Cole"},      Names{"Cooper"},
    Names{"Dalton"},    Names{"Dixon"},     Names{"Ellery"},    Names{"Farrow"},
    Names{"Fletcher"},  Names{"Garner"},    Names{"Hale"},      Names{"Harper"},
    Names{"Holloway"},  Names{"Hunt"},      Names{"Jarvis"},    Names{"Keller"},
    Names{"Lambert"},   Names{"Marsh"},     Names{"Mercer"},    Names{"Norwood"},
    Names{"Palmer"},    Names{"Quill"},     Names{"Ramsey"},    Names{"Sawyer"},
    Names{"Smith"},     Names{"Thorne"},    Names{"Underhill"}, Names{"Vance"},
    Names{"Walsh"},     Names{"Whitfield"}, Names{"Yardley"},   Names{"Zeller"}};
constexpr std::array plainFirst{
    Names{"Alice"}, Names{"Arthur"}, Names{"Beatrix"}, Names{"Ben"},    Names{"Clara"},
    Names{"Colin"}, Names{"Daisy"},  Names{"David"},   Names{"Edith"},  Names{"Edwin"},
    Names{"Flora"}, Names{"Frank"},  Names{"Grace"},   Names{"George"}, Names{"Hazel"},
    Names{"Hugh"},  Names{"Iris"},   Names{"Ivan"},    Names{"Jane"},   Names{"John"},
    Names{"Kay"},   Names{"Leo"},    Names{"Mary"},    Names{"Max"},    Names{"Nora"},
    Names{"Oscar"}, Names{"Paula"},  Names{"Peter"},   Names{"Rose"},   Names{"Simon"}};

constexpr std::array markedLast{
    Names{"Ångström"},  Names{"Bäcker"},  Names{"Çelik"},      Names{"Dvořák"},
    Names{"Fjellheim"}, Names{"Gößling"}, Names{"Horváth"},    Names{"Işık"},
    Names{"Jørgensen"}, Names{"Łukasik"}, Names{"Müller"},     Names{"Muñoz"},
    Names{"Núñez"},     Names{"Øster"},   Names{"Pérez"},      Names{"Şahin"},
    Names{"Sørensen"},  Names{"Straße"},  Names{"Škoda-Nová"}, Names{"Þórsdóttir"},
    Names{"Țepeș"},     Names{"Nguyễn"},  Names{"Œuvrard"},    Names{"Żółkiewski"},
    Names{"İnce"}};
constexpr std::array markedFirst{
    Names{"Åse"},      Names{"Björn"},  Names{"Chloé"},      Names{"Dušan"}, Names{"Élodie"},
    Names{"François"}, Names{"Gülşen"}, Names{"Håkon"},      Names{"Iñigo"}, Names{"Jürgen"},
    Names{"Kateřina"}, Names{"Lucía"},  Names{"Małgorzata"}, Names{"Nuño"},  Names{"Óscar"},
    Names{"Søren"},    Names{"Thuỳ"},   Names{"Ümit"},       Names{"Zoë"},   Names{"Ægir"}};

constexpr std::array apostropheLast{
    Names{"O'Brien"}, Names{"O'Hara"},     Names{"O'Neill"}, Names{"D'Angelo"}, Names{"L'Écuyer"},
    Names{"O'Brien"}, Names{"van 't Hof"}, Names{"M'Baye"},  Names{"Da'ud"},    Names{"O’Shea"}};
constexpr std::array apostropheFirst{Names{"Seán"},  Names{"Siobhán"}, Names{"D'Arcy"},
                                     Names{"Niamh"}, Names{"Conor"},   Names{"Gian'Carlo"},
                                     Names{"Aoife"}, Names{"Patrick"}, Names{"Róisín"}};

constexpr std::array greekLast{Names{"Αλεξίου"},   Names{"Βλάχος"},   Names{"Γεωργίου"},
                               Names{"Δημητρίου"}, Names{"Ζαχαρίας"}, Names{"Καραγιάννης"},
                               Names{"Λάμπρου"},   Names{"Νικολάου"}, Names{"Οικονόμου"},
                               Names{"Παππάς"},    Names{"Σταύρου"},  Names{"Ψαράς"}};
constexpr std::array greekFirst{
    Names{"Άννα"},   Names{"Βασίλης"}, Names{"Γιώργος"}, Names{"Ελένη"}, Names{"Ιωάννα"},
    Names{"Κώστας"}, Names{"Μαρία"},   Names{"Νίκος"},   Names{"Σοφία"}, Names{"Ωραιοζήλη"}};

constexpr std::array cyrillicLast{Names{"Белов"},    Names{"Воробьёва"}, Names{"Громов"},
                                  Names{"Ђорђевић"}, Names{"Зайцева"},   Names{"Їжакевич"},
                                  Names{"Козлов"},   Names{"Лебедева"},  Names{"Орлов"},
                                  Names{"Соколова"}, Names{"Тихонов"},   Names{"Щукина"}};
constexpr std::array cyrillicFirst{
    Names{"Алексей"}, Names{"Вера"},   Names{"Дмитрий"}, Names{"Елена"}, Names{"Игорь"},
    Names{"Ксения"},  Names{"Љубица"}, Names{"Марина"},  Names{"Олег"},  Names{"Ярослав"}};

constexpr std::array arabicLast{
    Names{"البحري"}, Names{"الحداد"}, Names{"الخطيب"},  Names{"الزهراني"}, Names{"الشريف"},
    Names{"العطار"}, Names{"النجار"}, Names{"بن سعيد"}, Names{"قاسم"},     Names{"منصور"}};
constexpr std::array arabicFirst{Names{"أحمد"},  Names{"أمينة"}, Names{"خالد"},  Names{"زينب"},
                                 Names{"سارة"},  Names{"عمر"},   Names{"فاطمة"}, Names{"ليلى"},
                                 Names{"محمود"}, Names{"يوسف"}};

constexpr std::array hebrewLast{Names{"אלון"},    Names{"ברק"},  Names{"גולן"},  Names{"דרור"},
                                Names{"כרמי"},    Names{"לביא"}, Names{"מזרחי"}, Names{"פרץ"},
                                Names{"צ'רניאק"}, Names{"שלו"}};
constexpr std::array hebrewFirst{Names{"אביגיל"}, Names{"דוד"}, Names{"הדס"},  Names{"יעל"},
                                 Names{"ליאור"},  Names{"משה"}, Names{"נועה"}, Names{"רון"},
                                 Names{"שירה"},   Names{"תמר"}};

constexpr std::array chineseLast{Names{"王"}, Names{"李"},  Names{"张"},   Names{"刘"},
                                 Names{"陈"}, Names{"杨"},  Names{"欧阳"}, Names{"司马"},
                                 Names{"林"}, Names{"𠮷田"}};
constexpr std::array chineseFirst{Names{"伟"},   Names{"芳"},   Names{"娜"},   Names{"秀英"},
                                  Names{"明"},   Names{"静怡"}, Names{"志强"}, Names{"晓"},
                                  Names{"雨桐"}, Names{"海"}};

constexpr std::array japaneseLast{Names{"佐藤"}, Names{"鈴木"}, Names{"高橋"}, Names{"田中"},
                                  Names{"渡辺"}, Names{"山本"}, Names{"小林"}, Names{"ささき"}};
constexpr std::array japaneseFirst{Names{"さくら"}, Names{"健太"}, Names{"美咲"},   Names{"翔"},
                                   Names{"ひろし"}, Names{"陽菜"}, Names{"ケンジ"}, Names{"結衣"}};

constexpr std::array thaiLast{Names{"จันทร์ดี"}, Names{"ชัยชนะ"}, Names{"ทองคำ"},
                              Names{"บุญมี"},   Names{"ศรีสุข"},  Names{"แสงทอง"}};
constexpr std::array thaiFirst{Names{"กมล"}, Names{"ชาติชาย"}, Names{"ดวงใจ"},
                               Names{"ปิยะ"}, Names{"มาลี"},    Names{"สมชาย"}};

constexpr std::array devanagariLast{Names{"गुप्ता"}, Names{"जोशी"}, Names{"त्रिपाठी"}, Names{"पाटील"},
                                    Names{"भट्ट"},  Names{"शर्मा"}, Names{"श्रेष्ठ"},    Names{"सिंह"}};
constexpr std::array devanagariFirst{Names{"अनिता"}, Names{"अर्जुन"}, Names{"कविता"}, Names{"दीपक"},
                                     Names{"प्रिया"}, Names{"राहुल"}, Names{"लक्ष्मी"}, Names{"विजय"}};

constexpr std::array lists{
    NameList{40, plainLast, plainFirst},          NameList{17, markedLast, markedFirst},
    NameList{6, apostropheLast, apostropheFirst}, NameList{6, greekLast, greekFirst},
    NameList{7, cyrillicLast, cyrillicFirst},     NameList{6, arabicLast, arabicFirst},
    NameList{4, hebrewLast, hebrewFirst},         NameList{5, chineseLast, chineseFirst},
    NameList{4, japaneseLast, japaneseFirst},     NameList{2, thaiLast, thaiFirst},
    NameList{3, devanagariLast, devanagariFirst}};

} // namespace

std::span<const NameList> nameLists() {
    return lists;
}

} // namespace kintar::site
