-- A small site that tells the dialect from its engine. Written as a foreign program would.
INSERT INTO LocGrp VALUES (4), (3);
INSERT INTO Loc VALUES (1, 3, 'Gate', 'W. Europe Standard Time', -1), (2, 3, 'Tower', '', 0),
                       (5, 4, 'Depot', 'UTC', 0);
INSERT INTO Dev VALUES (1, 7, 'Door'), (1, 8, 'Lift'), (5, 7, 'Barrier');
INSERT INTO Company VALUES (3, 1, 'Zeta'), (3, 2, 'alpha'), (3, 4, 'Ökonom'), (4, 1, 'Depot Ltd');
INSERT INTO Names VALUES
    (1, 'Smith', 'John', 3, 1, 0, 0),
    (2, 'smith', 'jane', 3, NULL, -1, 0),
    (3, 'SMYTHE', 'Ann', 3, 2, 0, -1),
    (4, 'O''Brien', 'Zoë', 3, 1, 0, 0),
    (5, 'ſmall', 'Ulf', 3, 4, 0, 0),
    (6, 'Παπαδόπουλος', 'Γιώργος', 3, 1, 0, 0),
    (7, 'ΠΑΠΑΔΆΚΗΣ', 'ΆΝΝΑ', 3, 9, 0, 0),
    (8, 'Иванов', 'Иван', 3, 1, 0, 0),
    (9, 'ИВАНОВА', 'Анна', 3, 1, 0, 0),
    (10, 'Smith', 'John', 4, 1, 0, 0),
    (11, 'Kelvin', 'Lord', 3, 1, 0, 0),
    (12, 'İnce', 'Ece', 4, 1, 0, 0),
    (13, 'ılgaz', 'Can', 4, 1, 0, 0),
    (14, 'Ilgaz', 'Can', 4, 1, 0, 0),
    (15, NULL, 'Nemo', 4, 1, NULL, NULL),
    (16, 'a_b', 'x', 4, 1, 0, 0),
    (17, 'a%b', 'x', 4, 1, 0, 0),
    (18, 'aXb', 'x', 4, 1, 0, 0),
    (19, '[x]', 'x', 4, 1, 0, 0),
    (20, 'back\slash', 'x', 4, 1, 0, 0),
    (21, '', 'empty', 4, 1, 0, 0);
INSERT INTO Cards VALUES
    (1, 1, 3, '00123', 'A-1', 1, '2012-03-14 00:00:00', '2013-01-01 00:00:00', -1, 0),
    (2, 1, 3, ' 123', 'A-2', 1, '2012-03-15 17:05:00', '2013-01-01 00:00:00', -1, 0),
    (3, 2, 3, '12A', 'B-1', 0, '2012-04-01 00:00:00', '2013-01-01 00:00:00', -1, 2),
    (4, 3, 3, '12345678901234567890', NULL, 1, '2011-01-01 00:00:00', NULL, 0, 0),
    (5, 4, 3, '12345678901234567891', 'a-3', 1, '2010-01-01 00:00:00', NULL, 0, 0),
    (6, 10, 4, '123.0', 'D', 1, '2012-03-14 00:00:00', NULL, 0, 0),
    (7, 5, 3, NULL, NULL, 1, NULL, NULL, 0, 1);
INSERT INTO LocCards VALUES
    (1, 1, 1, '2012-03-14 17:05:00', 7, 'I', 'N', 'N', 'N'),
    (2, 1, 2, '2012-03-13 08:00:00', 8, 'N', NULL, 'N', 'N'),
    (3, 2, 1, '2012-03-14 18:00:00', 8, 'N', 'N', 'N', 'N'),
    (4, 6, 5, '2012-03-14 06:00:00', 7, 'I', 'I', 'I', 'I');
INSERT INTO ImageType VALUES (3, 1, 0), (3, 2, -1), (4, 1, -1);
INSERT INTO Images VALUES (1, 2, 'smith.jpg'), (1, 1, 'sign.png'), (10, 1, 'other.jpg');
INSERT INTO UdfName VALUES (3, 5, 'Badge', 0), (3, 2, 'Colour', 0), (3, 9, 'Secret', -1);
INSERT INTO UDF VALUES
    (1, 2, 'Blue', 3), (1, 5, 'A17', 3), (2, 2, 'blueish', 3), (3, 2, 'Red', 3),
    (4, 5, 'a99', 3), (4, 2, 'BLUE', 3), (1, 9, NULL, 3);
INSERT INTO SKillName VALUES (3, 'First aid', 3), (7, 'Crane', 3);
INSERT INTO Skills VALUES (1, 3), (1, 7), (4, 7);
INSERT INTO OPR VALUES (1, 1), (2, 2), (3, NULL), (4, 3), (5, 77);
INSERT INTO PwProfile VALUES (1, -1), (2, 0), (3, NULL);
INSERT INTO MenuProfile VALUES (2, 1061, 0, -1), (2, 2, 1, -1), (2, 2, 5, 0), (3, 1061, 1, NULL);
INSERT INTO FormData VALUES ('ListNAMESEARCH', 2, 'Visitor', 900), ('LISTNameſearch', 1, 'Name', 3000),
                            ('ListOther', 1, 'Else', 1);
INSERT INTO OvrSchedule VALUES
    (7, 12, 1, 2, 3, '2012-03-14 17:05:00', '2012-03-14 18:00:00', 'O''Brien', 5, 0),
    (9, 12, 2, 1, 4, '2012-03-15 00:00:00', '2012-03-15 01:00:00', 'x', 5, 0);
INSERT INTO IO VALUES (12, 1);
INSERT INTO OvrGrpName VALUES (9, 5), (10, 77);
INSERT INTO OprCompany VALUES (2, 3, 4), (2, 3, 2), (2, 3, 0);
INSERT INTO Texts VALUES (204, 'Search Names'), (456, 'Alarm'), (10001, NULL);
