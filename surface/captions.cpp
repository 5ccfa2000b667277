#include "surface/captions.h"

#include <iterator>

namespace {

// Languages whose caption is the English one on purpose (a term every table uses).
constexpr int kAll = 0x3E;  // Spanish .. Italian
constexpr int Bit(int language) { return 1 << language; }

using Row = CaptionRow;

// clang-format off
const Row kRows[] = {
    // The main menu.
    {"mnuGame", {"&Game", "&Juego", "&Spiel", "&Jeu", "&Oyun", "&Gioco"}},
    {"mnuNew", {"&New", "&Nuevo", "&Neu", "&Nouveau", "&Yeni", "&Nuovo"}},
    {"mnuOpen", {"&Open ...", "&Abrir ...", "Ö&ffnen ...", "&Ouvrir ...", "&Aç ...", "&Apri ..."}},
    {"mnuSave", {"&Save", "&Guardar", "&Speichern", "&Enregistrer", "&Kaydet", "&Salva"}},
    {"mnuSaveAs", {"Save &As ...", "Guardar &como ...", "Speichern &unter ...", "Enregistrer &sous ...",
                   "&Farklı kaydet ...", "Salva &con nome ..."}},
    {"mnuShowPath", {"Show &Path ...", "Mostrar &ruta ...", "&Pfad anzeigen ...", "Afficher le &chemin ...",
                     "&Yolu göster ...", "Mostra &percorso ..."}},
    {"mnuLanguage", {"&Language ...", "&Idioma ...", "Spr&ache ...", "&Langue ...", "&Dil ...", "&Lingua ..."}},
    {"mnuTablePosition", {"&Table Position", "Posición de la &mesa", "&Tischposition", "Position de la &table",
                          "&Masa konumu", "Posizione del &tavolo"}},
    {"mnuAutoSize", {"&Auto-size/center", "&Ajustar y centrar", "&Größe anpassen/zentrieren",
                     "&Ajuster et centrer", "&Otomatik boyut/ortala", "&Adatta e centra"}},
    {"mnuExit", {"E&xit", "&Salir", "&Beenden", "&Quitter", "Çı&kış", "&Esci"}},
    {"mnuPlayers", {"&Players", "&Jugadores", "Spi&eler", "&Joueurs", "Oyun&cular", "Gio&catori"}},
    {"mnuPlayerAdd", {"&Add (buy-in)", "&Añadir (comprar fichas)", "&Hinzufügen (Einkauf)", "&Ajouter (cave)",
                      "&Ekle (fiş al)", "&Aggiungi (acquisto fiches)"}},
    {"mnuPlayerDelete", {"&Remove (cash-out)", "&Retirar (cobrar)", "&Entfernen (auszahlen)",
                         "&Retirer (encaisser)", "Çı&kar (bozdur)", "&Rimuovi (incassa)"}},
    {"mnuPlayerMove", {"&Move", "&Mover", "&Verschieben", "&Déplacer", "&Taşı", "&Sposta"}},
    {"mnuPlayerRename", {"Re&name", "Re&nombrar", "&Umbenennen", "Re&nommer", "&Yeniden adlandır", "Ri&nomina"}},
    {"mnuPlayerAtm", {"A&TM ...", "&Cajero ...", "&Geldautomat ...", "&Distributeur ...", "&ATM ...",
                      "&Bancomat ..."}},
    {"mnuAction", {"&Action", "&Acción", "&Aktion", "&Action", "&Eylem", "&Azione"}, Bit(kFrench)},
    {"mnuRollDice", {"&Roll the dice (right mouse button)", "&Tirar los dados (botón derecho)",
                     "&Würfeln (rechte Maustaste)", "&Lancer les dés (bouton droit)", "&Zar at (sağ fare tuşu)",
                     "&Lancia i dadi (tasto destro)"}},
    {"mnuPassDice", {"Pa&ss the dice\tP", "Pa&sar los dados\tP", "&Würfel weitergeben\tP",
                     "Pa&sser les dés\tP", "Zarları &devret\tP", "Pa&ssa i dadi\tP"}},
    {"mnuBuyPlaceBet", {"B&uy the Place bet", "C&omprar la apuesta a número", "Platzwette &kaufen",
                        "A&cheter la mise place", "Sayı bahsini &satın al", "Acq&uista la puntata place"}},
    {"mnuCallBetOn", {"Call bet O&N", "Apuesta &activa", "Wette &aktivieren", "Mise &active",
                      "Bahsi &aç", "Puntata &attiva"}},
    {"mnuCallAllBetsOn", {"Call &all bets ON", "&Todas las apuestas activas", "&Alle Wetten aktivieren",
                          "&Toutes les mises actives", "&Tüm bahisleri aç", "&Tutte le puntate attive"}},
    {"mnuCallBetOff", {"Call bet O&FF", "Apuesta &inactiva", "Wette &deaktivieren", "Mise &inactive",
                       "Bahsi &kapat", "Puntata &inattiva"}},
    {"mnuCallAllBetsOff", {"Call a&ll bets OFF", "Todas las apuestas i&nactivas", "Alle Wetten &deaktivieren",
                           "Toutes les mises i&nactives", "Tüm &bahisleri kapat", "Tutte le puntate i&nattive"}},
    {"mnuRemoveBet", {"Re&move bet", "&Quitar apuesta", "Wette &zurücknehmen", "Reti&rer la mise",
                      "Bahsi &geri al", "&Togli puntata"}},
    {"mnuRemoveAllBets", {"Remo&ve all bets", "Quitar t&odas las apuestas", "&Alle Wetten zurücknehmen",
                          "Retirer &toutes les mises", "&Tüm bahisleri geri al", "Togli t&utte le puntate"}},
    {"mnuDisplayBetAmounts", {"D&isplay bets as numbers", "&Mostrar apuestas como cifras",
                              "Wetten als &Zahlen anzeigen", "&Afficher les mises en chiffres",
                              "Bahisleri &rakamla göster", "&Mostra puntate come cifre"}},

    // The dice-rolls panel and the status line.
    {"cmdRollDice", {"&Roll", "&Tirar", "&Würfeln", "&Lancer", "&At", "&Lancia"}},
    {"cmdPassDice", {"&Pass dice", "&Pasar dados", "Würfel &weitergeben", "&Passer les dés", "Zarı &devret",
                     "&Passa i dadi"}},
    {"lblAutoRoll", {"Auto-Roll", "Tirada automática", "Auto-Wurf", "Lancer auto", "Otomatik atış",
                     "Lancio automatico"}},
    {"lblHyperDrive", {"Hyper-Drive", "Hyper-Drive", "Hyper-Drive", "Hyper-Drive", "Hyper-Drive", "Hyper-Drive"},
     kAll},
    {"cmdAutoStop", {"Auto-&Stop ...", "Parada &automática ...", "Auto-&Stopp ...", "Arrêt &auto ...",
                     "Otomatik &durdurma ...", "Arresto &automatico ..."}},
    {"cmdDelay", {"&Delay ...", "&Pausa ...", "&Pause ...", "&Délai ...", "&Gecikme ...", "&Ritardo ..."}},
    {"stsComeOut", {"Come-out roll", "Tirada de salida", "Come-out-Wurf", "Lancer de sortie", "Açılış atışı",
                    "Lancio di uscita"}},
    {"stsPoint", {"Point: %1", "Punto: %1", "Punkt: %1", "Point : %1", "Sayı: %1", "Punto: %1"}},
    {"stsShooter", {"Shooter: %1", "Tirador: %1", "Werfer: %1", "Tireur : %1", "Atıcı: %1", "Tiratore: %1"}},
    {"stsNoShooter", {"No shooter", "Sin tirador", "Kein Werfer", "Pas de tireur", "Atıcı yok",
                      "Nessun tiratore"}},
    {"stsLastRoll", {"Last roll: %1 (%2-%3)", "Última tirada: %1 (%2-%3)", "Letzter Wurf: %1 (%2-%3)",
                     "Dernier lancer : %1 (%2-%3)", "Son atış: %1 (%2-%3)", "Ultimo lancio: %1 (%2-%3)"}},
    {"stsRolls", {"Rolls: %1", "Tiradas: %1", "Würfe: %1", "Lancers : %1", "Atışlar: %1", "Lanci: %1"}},
    {"stsPays", {"Pays %1", "Paga %1", "Zahlt %1", "Paie %1", "Öder %1", "Paga %1"}},
    {"stsWorking", {"Working", "En juego", "Aktiv", "Active", "Çalışıyor", "Attiva"}},
    {"stsNotWorking", {"Not working", "Sin efecto", "Inaktiv", "Inactive", "Çalışmıyor", "Inattiva"}},
    {"stsWaitRoll", {"The dice are rolling.", "Los dados están rodando.", "Die Würfel rollen.",
                     "Les dés roulent.", "Zarlar yuvarlanıyor.", "I dadi stanno rotolando."}},
    {"stsOneShot", {"Click the bet to change.", "Haga clic en la apuesta que desea cambiar.",
                    "Klicken Sie auf die Wette, die Sie ändern möchten.", "Cliquez sur la mise à modifier.",
                    "Değiştirilecek bahse tıklayın.", "Fare clic sulla puntata da cambiare."}},

    // The lettering of the table.
    {"tblLay", {"LAY", "EN CONTRA", "GEGEN", "CONTRE", "KARŞI", "CONTRO"}},
    {"tblDontCome", {"DON'T COME", "NO VENIR", "NICHT KOMMEN", "NE PAS VENIR", "GELME", "NON VENIRE"}},
    {"tblOdds", {"ODDS", "CUOTA", "QUOTE", "COTE", "ORAN", "QUOTA"}},
    {"tblBuy", {"BUY", "COMPRA", "KAUF", "ACHAT", "ALIM", "ACQUISTO"}},
    {"tblCome", {"COME", "VENIR", "KOMMEN", "VENIR", "GEL", "VIENI"}},
    {"tblField", {"FIELD", "CAMPO", "FELD", "CHAMP", "ALAN", "CAMPO"}},
    {"tblDontComeBar", {"DON'T COME BAR", "BARRA NO VENIR", "SPERRE NICHT KOMMEN", "BARRE NE PAS VENIR",
                        "GELME BARI", "BARRA NON VENIRE"}},
    {"tblDontPassBar", {"DON'T PASS BAR", "BARRA NO PASE", "SPERRE NICHT PASSE", "BARRE NE PASSE PAS",
                        "GEÇMEZ BARI", "BARRA NON PASSA"}},
    {"tblLayOdds", {"LAY ODDS", "CUOTA EN CONTRA", "GEGENQUOTE", "COTE CONTRE", "KARŞI ORAN", "QUOTA CONTRO"}},
    {"tblPassLine", {"PASS LINE", "LÍNEA DE PASE", "PASSE-LINIE", "LIGNE DE PASSE", "PAS ÇİZGİSİ",
                     "LINEA DI PASSAGGIO"}},
    {"tblPassLineOdds", {"PASS LINE ODDS", "CUOTA DE LA LÍNEA DE PASE", "QUOTE DER PASSE-LINIE",
                         "COTE DE LA LIGNE DE PASSE", "PAS ÇİZGİSİ ORANI", "QUOTA DELLA LINEA DI PASSAGGIO"}},
    {"tblBig", {"BIG", "GRANDE", "GROSSE", "GROS", "BÜYÜK", "GRANDE"}},
    {"tblSeven", {"SEVEN", "SIETE", "SIEBEN", "SEPT", "YEDİ", "SETTE"}},
    {"tblAnyCraps", {"ANY CRAPS", "CUALQUIER CRAPS", "JEDES CRAPS", "TOUT CRAPS", "HERHANGİ CRAPS",
                     "QUALSIASI CRAPS"}},
    {"tblHorn", {"HORN", "CUERNO", "HORN", "CORNE", "BOYNUZ", "CORNO"}, Bit(kGerman)},
    {"tblHop", {"HOPS", "HOPS", "HOPS", "HOPS", "HOPS", "HOPS"}, kAll},
    {"tblWorld", {"WORLD", "MUNDO", "WELT", "MONDE", "DÜNYA", "MONDO"}},
    {"tblFive", {"FIVE", "CINCO", "FÜNF", "CINQ", "BEŞ", "CINQUE"}},
    {"tblSix", {"SIX", "SEIS", "SECHS", "SIX", "ALTI", "SEI"}, Bit(kFrench)},
    {"tblNine", {"NINE", "NUEVE", "NEUN", "NEUF", "DOKUZ", "NOVE"}},
    {"tblOn", {"ON", "ON", "ON", "ON", "ON", "ON"}, kAll},
    {"tblOff", {"OFF", "OFF", "OFF", "OFF", "OFF", "OFF"}, kAll},
    {"tblStickman", {"STICKMAN", "CRUPIER", "CROUPIER", "CROUPIER", "KRUPİYE", "CROUPIER"}},
    {"tblStack", {"CS%1", "CS%1", "CS%1", "CS%1", "CS%1", "CS%1"}, kAll},
    {"tblOnTable", {"On table %1", "En la mesa %1", "Im Spiel %1", "En jeu %1", "Masada %1", "In gioco %1"}},
    {"tblPayTo", {"%1 to %2", "%1 a %2", "%1 zu %2", "%1 contre %2", "%1'e %2", "%1 a %2"}},
    {"tblPayFor", {"%1 for %2", "%1 por %2", "%1 für %2", "%1 pour %2", "%2 için %1", "%1 per %2"}},

    // The message box and the file window.
    {"cmdOK", {"&OK", "&Aceptar", "&OK", "&OK", "&Tamam", "&OK"}, Bit(kGerman) | Bit(kFrench) | Bit(kItalian)},
    {"cmdYes", {"&Yes", "&Sí", "&Ja", "&Oui", "&Evet", "&Sì"}},
    {"cmdNo", {"&No", "&No", "&Nein", "&Non", "&Hayır", "&No"}, Bit(kSpanish) | Bit(kItalian)},
    {"cmdCancel", {"&Cancel", "&Cancelar", "&Abbrechen", "&Annuler", "&İptal", "&Annulla"}},
    {"cmdHelp", {"&Help", "A&yuda", "&Hilfe", "&Aide", "&Yardım", "&Guida"}},
    {"chkHide", {"Hide", "Ocultar", "Ausblenden", "Masquer", "Gizle", "Nascondi"}},
    {"msgNoHelp", {"The help file isn't installed, so help topic %1 can't be shown.",
                   "El archivo de ayuda no está instalado; no se puede mostrar el tema %1.",
                   "Die Hilfedatei ist nicht installiert; das Hilfethema %1 kann nicht angezeigt werden.",
                   "Le fichier d'aide n'est pas installé ; la rubrique %1 ne peut pas être affichée.",
                   "Yardım dosyası kurulu değil; %1 numaralı yardım konusu gösterilemiyor.",
                   "Il file della guida non è installato; l'argomento %1 non può essere mostrato."}},
    {"lblDrive", {"Drive:", "Unidad:", "Laufwerk:", "Lecteur :", "Sürücü:", "Unità:"}},
    {"lblFolder", {"Folder:", "Carpeta:", "Ordner:", "Dossier :", "Klasör:", "Cartella:"}},
    {"lblFiles", {"Files:", "Archivos:", "Dateien:", "Fichiers :", "Dosyalar:", "File:"}},
    {"lblFileName", {"File name:", "Nombre del archivo:", "Dateiname:", "Nom du fichier :", "Dosya adı:",
                     "Nome del file:"}},
    {"lblFilter", {"Show:", "Mostrar:", "Anzeigen:", "Afficher :", "Göster:", "Mostra:"}},
    {"cmdHome", {"&Home folder", "Carpeta &inicial", "&Startordner", "Dossier d'&accueil", "&Ana klasör",
                 "Cartella &iniziale"}},
    {"cmdUp", {"&Up", "A&rriba", "&Nach oben", "&Remonter", "Y&ukarı", "&Su"}},
    {"msgBadFileName", {"\"%1\" can't be used as a file name.", "\"%1\" no se puede usar como nombre de archivo.",
                        "\"%1\" kann nicht als Dateiname verwendet werden.",
                        "« %1 » ne peut pas servir de nom de fichier.",
                        "\"%1\" dosya adı olarak kullanılamaz.", "\"%1\" non può essere usato come nome di file."}},
    {"msgShowPath", {"DiceHall keeps its files in this folder:\n\n%1",
                     "DiceHall guarda sus archivos en esta carpeta:\n\n%1",
                     "DiceHall legt seine Dateien in diesem Ordner ab:\n\n%1",
                     "DiceHall range ses fichiers dans ce dossier :\n\n%1",
                     "DiceHall dosyalarını bu klasörde tutar:\n\n%1",
                     "DiceHall conserva i suoi file in questa cartella:\n\n%1"}},

    // The settle dialog.
    {"lblModify", {"Modify", "Modificar", "Ändern", "Modifier", "Değiştir", "Modifica"}},
    {"lblBetRow", {"&Bet", "&Apuesta", "&Wette", "&Mise", "&Bahis", "&Puntata"}},
    {"cmdApplyModify", {"&Modify by rule", "&Modificar según la regla", "Nach Regel ä&ndern",
                        "&Modifier selon la règle", "&Kurala göre değiştir", "&Modifica secondo la regola"}},
    {"cmdApplyBet", {"Set &to amount", "Fijar &importe", "Betrag &setzen", "&Fixer le montant", "&Tutarı ayarla",
                     "&Imposta l'importo"}},
    {"unitDollars", {"dollars", "dólares", "Dollar", "dollars", "dolar", "dollari"}, Bit(kFrench)},
    {"unitPercent", {"percent", "por ciento", "Prozent", "pour cent", "yüzde", "per cento"}},
    {"unitCheck", {"× %1 checks", "× fichas de %1", "× %1-Jetons", "× jetons de %1", "× %1'lik fiş",
                   "× fiches da %1"}},

    // The players' dialogs and the new game.
    {"ttlMove", {"Move player", "Mover jugador", "Spieler verschieben", "Déplacer le joueur", "Oyuncuyu taşı",
                 "Sposta giocatore"}},
    {"lblMoveTo", {"Move %1 to:", "Mover a %1 a:", "%1 verschieben nach:", "Déplacer %1 vers :",
                   "%1 oyuncusunu taşı:", "Sposta %1 a:"}},
    {"lblFreeSeat", {"%1 (free)", "%1 (libre)", "%1 (frei)", "%1 (libre)", "%1 (boş)", "%1 (libero)"}},
    {"lblTakenSeat", {"%1 (%2: exchange)", "%1 (%2: intercambio)", "%1 (%2: tauschen)", "%1 (%2 : échange)",
                      "%1 (%2: yer değiştir)", "%1 (%2: scambio)"}},
    {"ttlAtm", {"ATM", "Cajero", "Geldautomat", "Distributeur", "ATM", "Bancomat"}, Bit(kTurkish)},
    {"lblAtmBankroll", {"%1's bankroll: %2 (on the table: %3)", "Fondos de %1: %2 (en la mesa: %3)",
                        "Kapital von %1: %2 (im Spiel: %3)", "Capital de %1 : %2 (en jeu : %3)",
                        "%1 kasası: %2 (masada: %3)", "Capitale di %1: %2 (in gioco: %3)"}},
    {"optWithdraw", {"&Withdraw: money to the rail", "&Retirar: dinero a la baranda", "&Abheben: Geld an die Reling",
                     "&Retirer : argent vers le rail", "&Çek: parayı rafa al", "&Preleva: denaro sul bordo"}},
    {"optDeposit", {"&Deposit: money from the rail", "&Depositar: dinero de la baranda",
                    "&Einzahlen: Geld von der Reling", "&Déposer : argent du rail", "&Yatır: raftaki paradan",
                    "&Deposita: denaro dal bordo"}},
    {"lblAmount", {"Amount:", "Importe:", "Betrag:", "Montant :", "Tutar:", "Importo:"}},
    {"ttlNewGame", {"New game", "Nueva partida", "Neues Spiel", "Nouvelle partie", "Yeni oyun", "Nuova partita"}},
    {"ttlOpenGame", {"Open Game", "Abrir partida", "Spiel öffnen", "Ouvrir une partie", "Oyun aç", "Apri partita"}},
    {"ttlSaveGame", {"Save Game As", "Guardar partida como", "Spiel speichern unter", "Enregistrer la partie sous",
                     "Oyunu farklı kaydet", "Salva partita con nome"}},
    {"optNewSession", {"New &session: same players, same rules", "Nueva &sesión: mismos jugadores y reglas",
                       "Neue &Sitzung: gleiche Spieler, gleiche Regeln",
                       "Nouvelle &session : mêmes joueurs, mêmes règles", "Yeni &oturum: aynı oyuncular, aynı kurallar",
                       "Nuova &sessione: stessi giocatori, stesse regole"}},
    {"optNewDefault", {"New &game: default rules, empty table", "Nueva &partida: reglas por defecto, mesa vacía",
                       "Neues &Spiel: Standardregeln, leerer Tisch", "Nouvelle &partie : règles par défaut, table vide",
                       "Yeni &oyun: varsayılan kurallar, boş masa", "Nuova &partita: regole predefinite, tavolo vuoto"}},
    {"msgSelectSeat", {"Please select a player first.", "Seleccione primero un jugador.",
                       "Bitte wählen Sie zuerst einen Spieler.", "Veuillez d'abord choisir un joueur.",
                       "Lütfen önce bir oyuncu seçin.", "Selezionare prima un giocatore."}},
    {"msgNoPlayers", {"If you'd like to make a bet, please click an\nopen position on the rail to add a player.",
                      "Si desea apostar, haga clic en una\nposición libre de la baranda para añadir un jugador.",
                      "Wenn Sie wetten möchten, klicken Sie auf einen\nfreien Platz an der Reling, um einen Spieler "
                      "hinzuzufügen.",
                      "Pour miser, cliquez sur une\nplace libre du rail pour ajouter un joueur.",
                      "Bahis yapmak için, bir oyuncu eklemek üzere\nraftaki boş bir yere tıklayın.",
                      "Per puntare, fare clic su un\nposto libero del bordo per aggiungere un giocatore."}},
    {"ttlNoPlayers", {"No Players Present", "No hay jugadores", "Keine Spieler am Tisch", "Aucun joueur présent",
                      "Oyuncu yok", "Nessun giocatore presente"}},
    {"msgNoBettor", {"If you'd like to make a bet,\nplease select a player.", "Si desea apostar,\nseleccione un jugador.",
                     "Wenn Sie wetten möchten,\nwählen Sie bitte einen Spieler.",
                     "Pour miser,\nveuillez choisir un joueur.", "Bahis yapmak için\nlütfen bir oyuncu seçin.",
                     "Per puntare,\nselezionare un giocatore."}},
    {"ttlNoBettor", {"Bettor Not Selected", "Jugador no seleccionado", "Kein Spieler gewählt",
                     "Joueur non choisi", "Oyuncu seçilmedi", "Giocatore non selezionato"}},

    // Auto-Roll and Hyper-Drive prompts.
    {"msgAutoStop", {"How often (number of rolls) would you like Auto-Roll / Hyper-Drive to automatically stop?  "
                     "\n\n(This is in addition to any auto-stops commanded through auto-betting.  Enter 0 for no "
                     "automatic stopping.)",
                     "¿Cada cuántas tiradas desea que la tirada automática / Hyper-Drive se detenga sola?  \n\n"
                     "(Además de las paradas que ordenen las apuestas automáticas.  Escriba 0 para no detenerse.)",
                     "Nach wie vielen Würfen soll Auto-Wurf / Hyper-Drive jeweils von selbst anhalten?  \n\n"
                     "(Zusätzlich zu den Stopps, die Auto-Bet-Skripte befehlen.  0 bedeutet: kein automatischer "
                     "Stopp.)",
                     "Tous les combien de lancers le lancer auto / Hyper-Drive doit-il s'arrêter de lui-même ?  \n\n"
                     "(En plus des arrêts commandés par les mises automatiques.  Entrez 0 pour ne jamais s'arrêter.)",
                     "Otomatik atış / Hyper-Drive kaç atışta bir kendiliğinden dursun?  \n\n"
                     "(Otomatik bahis komutlarıyla verilen duruşlara ek olarak.  Durmaması için 0 girin.)",
                     "Ogni quanti lanci il lancio automatico / Hyper-Drive deve fermarsi da solo?  \n\n"
                     "(Oltre agli arresti comandati dalle puntate automatiche.  Inserire 0 per non fermarsi mai.)"}},
    {"ttlAutoStop", {"Set Auto-Roll / Hyper-Drive Auto-Stop", "Parada de la tirada automática / Hyper-Drive",
                     "Auto-Stopp für Auto-Wurf / Hyper-Drive", "Arrêt auto du lancer auto / Hyper-Drive",
                     "Otomatik atış / Hyper-Drive otomatik durdurma", "Arresto del lancio automatico / Hyper-Drive"}},
    {"msgWholeNumber", {"Please enter 0 or a whole number of rolls above 0.",
                        "Escriba 0 o un número entero de tiradas mayor que 0.",
                        "Bitte geben Sie 0 oder eine ganze Zahl von Würfen über 0 ein.",
                        "Veuillez entrer 0 ou un nombre entier de lancers supérieur à 0.",
                        "Lütfen 0 ya da 0'dan büyük bir tam atış sayısı girin.",
                        "Inserire 0 o un numero intero di lanci maggiore di 0."}},
    {"msgDelayRange", {"Please enter a number of seconds from 0 to 300.", "Escriba un número de segundos entre 0 y 300.",
                       "Bitte geben Sie eine Sekundenzahl von 0 bis 300 ein.",
                       "Veuillez entrer un nombre de secondes entre 0 et 300.",
                       "Lütfen 0 ile 300 arasında bir saniye değeri girin.",
                       "Inserire un numero di secondi da 0 a 300."}},

    // The opening display.
    {"lblSubtitle", {"The craps table for players and system builders",
                     "La mesa de craps para jugadores y creadores de sistemas",
                     "Der Craps-Tisch für Spieler und Systementwickler",
                     "La table de craps des joueurs et des créateurs de systèmes",
                     "Oyuncular ve sistem kuranlar için craps masası",
                     "Il tavolo di craps per giocatori e ideatori di sistemi"}},
    {"lblLanguage", {"Language", "Idioma", "Sprache", "Langue", "Dil", "Lingua"}},
    {"lblPreparing", {"Setting up the table ...", "Preparando la mesa ...", "Der Tisch wird aufgebaut ...",
                      "Préparation de la table ...", "Masa hazırlanıyor ...", "Preparazione del tavolo ..."}},
    {"cmdPlay", {"&Play", "&Jugar", "&Spielen", "&Jouer", "&Oyna", "&Gioca"}},
};
// clang-format on

const Row* FindRow(std::string_view name) {
  for (const Row& r : kRows)
    if (r.name == name) return &r;
  return nullptr;
}

}  // namespace

const std::vector<CaptionRow>& CaptionRows() {
  static const std::vector<CaptionRow> rows(std::begin(kRows), std::end(kRows));
  return rows;
}

std::string Caption(int language, std::string_view name) {
  const Row* r = FindRow(name);
  if (r == nullptr) return std::string(name);
  if (language < 0 || language >= kLanguages || r->text[language].empty()) return std::string(r->text[kEnglish]);
  return std::string(r->text[language]);
}

std::string Caption(int language, std::string_view name, const std::vector<std::string>& values) {
  std::string text = Caption(language, name);
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9') {
      const size_t k = static_cast<size_t>(text[i + 1] - '1');
      if (k < values.size()) out += values[k];
      ++i;
      continue;
    }
    out += text[i];
  }
  return out;
}
